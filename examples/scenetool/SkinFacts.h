#pragma once

#include "examples/scenetool/SceneFacts.h"
#include "examples/scenetool/Skinning.h"

#include <optional>
#include <ostream>

namespace velmoran::examples
{
/// What the present pose makes of a skinned mesh.
struct SkinFacts
{
    SkinInstance skin;
    std::vector<scene::NodePtr> joints;  ///< empty where the scene has none of that ID
    std::vector<Eigen::Vector3d> points; ///< the skinned vertices, in world space
    Displacement displacement;           ///< from where they were bound
};

/// Skins the mesh. Linear in vertices, influences and joints.
SkinFacts takeSkinFacts(const scene::SceneManagerPtr& scene, const SkinInstance& skin);

/// The joints that are not in the scene.
std::size_t countMissingJoints(const SkinFacts& facts);

/// "controller", "node", "skeletons", "joints_resolved", "joint_count", "joint_nodes" (IDs, null
/// for those not in the scene), "node_world_is_identity" and "node_world" (four rows of four);
/// then the pose, as "rest" or, with a time, as the only entry of "animated", which begins with
/// "time". A pose has "with_node_world" (the world matrix of the node is part of skinning),
/// which has "count", "min", "max" and "mean" (null without vertices), "largest_displacement"
/// (from the bind pose) and "vertices".
Json collectSkin(const SkinFacts& facts, const std::optional<double>& time);

/// Some lines for people, with the first few vertices.
void printSkin(const SkinFacts& facts, std::ostream& out);
} // namespace velmoran::examples
