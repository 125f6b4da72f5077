#include "examples/scenetool/SkinFacts.h"

#include "examples/scenetool/Text.h"
#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"

#include <algorithm>

namespace velmoran::examples
{
namespace
{
constexpr std::size_t MAX_VERTICES = 10; ///< shown to people

struct Extent
{
    Eigen::Vector3d low = Eigen::Vector3d::Zero();
    Eigen::Vector3d high = Eigen::Vector3d::Zero();
    Eigen::Vector3d mean = Eigen::Vector3d::Zero();
};

/// All zeros without points.
Extent measure(const std::vector<Eigen::Vector3d>& points)
{
    Extent extent;
    if (points.empty())
    {
        return extent;
    }
    extent.low = points.front();
    extent.high = points.front();
    for (const Eigen::Vector3d& point : points)
    {
        extent.low = extent.low.cwiseMin(point);
        extent.high = extent.high.cwiseMax(point);
        extent.mean += point / static_cast<double>(points.size());
    }
    return extent;
}

Json toJson(const Eigen::Vector3d& point)
{
    return {point.x(), point.y(), point.z()};
}

Json collectVertices(const SkinFacts& facts)
{
    const Extent extent = measure(facts.points);
    const auto orNull = [&facts](const Eigen::Vector3d& point)
    { return facts.points.empty() ? Json(nullptr) : toJson(point); };
    Json vertices = Json::array();
    for (const Eigen::Vector3d& point : facts.points)
    {
        vertices.push_back(toJson(point));
    }
    return {{"count", facts.points.size()},
            {"min", orNull(extent.low)},
            {"max", orNull(extent.high)},
            {"mean", orNull(extent.mean)},
            {"largest_displacement", facts.displacement.distance},
            {"vertices", std::move(vertices)}};
}
} // namespace

SkinFacts takeSkinFacts(const scene::SceneManagerPtr& scene, const SkinInstance& skin)
{
    SkinFacts facts;
    facts.skin = skin;
    facts.joints = findJoints(scene, skin);
    facts.points = getPoints(*skinPositions(scene, skin));
    facts.displacement = findLargestDisplacement(getBoundPoints(skin), facts.points);
    return facts;
}

std::size_t countMissingJoints(const SkinFacts& facts)
{
    return static_cast<std::size_t>(
        std::count(facts.joints.begin(), facts.joints.end(), scene::NodePtr()));
}

Json collectSkin(const SkinFacts& facts, const std::optional<double>& time)
{
    const Eigen::Matrix4f world = facts.skin.node->getCombinedTransformations();
    Json joints = Json::array();
    for (const scene::NodePtr& joint : facts.joints)
    {
        joints.push_back(joint ? Json(joint->getID()) : Json(nullptr));
    }
    Json json = {{"controller", facts.skin.instance->getController()->getID()},
                 {"node", facts.skin.node->getID()},
                 {"skeletons", facts.skin.instance->getSkeletons()},
                 {"joints_resolved", facts.joints.size() - countMissingJoints(facts)},
                 {"joint_count", facts.joints.size()},
                 {"joint_nodes", std::move(joints)},
                 {"node_world_is_identity", world.isIdentity()},
                 {"node_world", matrixRows(world)}};
    if (time)
    {
        json["animated"] = Json::array();
        json["animated"].push_back({{"time", *time}, {"with_node_world", collectVertices(facts)}});
    }
    else
    {
        json["rest"] = {{"with_node_world", collectVertices(facts)}};
    }
    return json;
}

void printSkin(const SkinFacts& facts, std::ostream& out)
{
    const Extent extent = measure(facts.points);
    const std::string displacement = shortNumber(facts.displacement.distance);
    out << "  node " << quoted(facts.skin.node->getID()) << ", skin "
        << quoted(facts.skin.instance->getController()->getID()) << ": "
        << countText(facts.points.size(), "vertex", "vertices") << ", "
        << countText(facts.joints.size(), "joint", "joints") << '\n'
        << "    from " << pointText(extent.low) << " to " << pointText(extent.high) << ", mean "
        << pointText(extent.mean) << '\n'
        << "    largest displacement from the bind pose " << displacement
        << (displacement == "0" ? "" : ", of vertex " + std::to_string(facts.displacement.place))
        << '\n';
    const std::size_t shown = std::min(facts.points.size(), MAX_VERTICES);
    for (std::size_t i = 0; i < shown; ++i)
    {
        out << padLeft(std::to_string(i), 10) << "  " << pointText(facts.points[i]) << '\n';
    }
    if (facts.points.size() > shown)
    {
        out << "         ... and " << facts.points.size() - shown << " more\n";
    }
}
} // namespace velmoran::examples
