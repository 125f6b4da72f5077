#pragma once

#include "examples/collada/PrimitiveInputs.h"

namespace velmoran::examples::collada
{
/// Adds the primitives in the `<mesh>` of `draft` to its mesh: as triangles, or with
/// `keepsPolygons` `<polylist>` and `<polygons>` as polygons of their corners.
///
/// Polygons are split fan by fan: corners 0, i, i + 1. Fans and strips become the
/// triangles that they stand for. Left out with a warning: lines and other kinds,
/// primitives without VERTEX input, faces of less than three corners, and holes. Fails
/// at indices that are not there and at counts that differ from what is there.
void readPrimitives(Document& document, Sources& sources, MeshDraft& draft, bool keepsPolygons);
} // namespace velmoran::examples::collada
