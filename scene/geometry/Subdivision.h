#pragma once

#include "scene/geometry/TriangleMeshPrimitive.h"

#include <vector>

namespace velmoran::scene
{
/// Refines `primitives`, which are primitives of `mesh`, once, as if they were one. The skin
/// of `controller`, which may be empty, gets the influences of the refined vertices.
void subDivideTriangles(Mesh& mesh, const std::vector<TriangleMeshPrimitive*>& primitives,
                        const ControllerPtr& controller);
} // namespace velmoran::scene
