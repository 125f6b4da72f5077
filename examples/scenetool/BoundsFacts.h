#pragma once

#include "examples/scenetool/SceneFacts.h"

#include <Eigen/Core>

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace velmoran::examples
{
/// Bounds as the library answers them.
struct Box
{
    Eigen::Vector3f low = Eigen::Vector3f::Zero();
    Eigen::Vector3f high = Eigen::Vector3f::Zero();
    Eigen::Vector3f center = Eigen::Vector3f::Zero();
};

struct PrimitiveBounds
{
    std::string kind; ///< "triangles" or "polygons"
    std::string material;
    Box box;
};

struct GeometryBounds
{
    std::string id;
    Box box;
    std::vector<PrimitiveBounds> primitives;
};

struct NodeBounds
{
    std::string id;
    Box box;
};

/// The bounds of all that has any.
struct SceneBounds
{
    std::vector<GeometryBounds> geometries; ///< in the order of their IDs
    std::vector<NodeBounds> nodes;          ///< below the root, with geometry in or below them
    std::optional<Box> scene;               ///< unset: there is no geometry in it
};

constexpr std::size_t ALL_NODES = std::numeric_limits<std::size_t>::max();

/// Asks the library. For at most `maxNodes` nodes, since each asks all below it; the others get
/// an ID only.
SceneBounds takeBounds(const scene::SceneManagerPtr& scene, std::size_t maxNodes);

/// "geometries" and "nodes", each with "id" and bounds, and the bounds "scene" (null without
/// geometry). Geometries have "primitives" with "kind", "material" and bounds. Bounds are "min",
/// "max" and "center".
Json collectBounds(const SceneBounds& bounds);
} // namespace velmoran::examples
