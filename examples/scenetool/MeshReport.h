#pragma once

#include "examples/scenetool/MeshEditing.h"
#include "examples/scenetool/SceneFacts.h"

#include <ostream>

namespace velmoran::examples
{
/// "geometries", each with "id", "name", "skin" (ID of the controller, or null), "primitives"
/// ("kind", "material", and sizes), the sizes of all of them, "subdivision_seconds" and
/// "normals_seconds" (null for what was not done); and the "totals" of these. Sizes are
/// "triangles_before", "triangles_after", "area_before" and "area_after", in the meshes' own
/// spaces.
Json collectChanges(const std::vector<MeshChange>& changes);

/// A table for people; the first few of many meshes.
void printChanges(const std::vector<MeshChange>& changes, std::ostream& out);
} // namespace velmoran::examples
