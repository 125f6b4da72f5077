#pragma once

#include "scene/geometry/TriangleMeshPrimitive.h"

#include <vector>

namespace velmoran::scene
{
/// Computes the vertex normals of `primitives`, which are primitives of `mesh`, as if they
/// were one, and stores them; see `TriangleMeshPrimitive::recalculateVertexNormals`.
void computeVertexNormals(Mesh& mesh, const std::vector<TriangleMeshPrimitive*>& primitives);
} // namespace velmoran::scene
