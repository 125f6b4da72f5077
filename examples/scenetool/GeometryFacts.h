#pragma once

#include "examples/scenetool/SceneFacts.h"

#include <string>

namespace velmoran::examples
{
/// The geometries of a scene in the order of their IDs: "id", "name", "kind" ("mesh" or
/// "convex_mesh", which may have "convex_hull_of"), number, bounds and sum of the positions,
/// "sources", "triangle_count" (polygons count as fans) and "faces_by_kind".
Json collectGeometries(const scene::SceneManagerPtr& scene);

/// Their "positions", "triangles" and "faces_by_kind" in all.
Json collectTotals(const Json& geometries);

/// "triangles" or "polygons".
std::string kindText(const scene::IMeshPrimitive& primitive);
} // namespace velmoran::examples
