#pragma once

#include "scene/geometry/TriangleMeshPrimitive.h"

#include <vector>

namespace velmoran::scene
{
/// Stores `normals`, three floats for each position of `mesh`, where its normals are: with
/// the vertices, or in a slot of their own in the records of `primitives`, which have a
/// `VERTEX` input each. See `TriangleMeshPrimitive::recalculateVertexNormals`.
void storeNormals(Mesh& mesh, const std::vector<TriangleMeshPrimitive*>& primitives,
                  std::vector<float> normals);
} // namespace velmoran::scene
