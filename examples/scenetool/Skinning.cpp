#include "examples/scenetool/Skinning.h"

#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <cmath>

namespace velmoran::examples
{
namespace
{
scene::StreamPtr skinStream(const scene::SceneManagerPtr& scene, const SkinInstance& instance,
                            const scene::StreamPtr& values)
{
    const scene::SkinPtr& skin = instance.skin;
    return scene::SceneManager::calculateSkinnedVerticesStream(
        scene, instance.node, values, skin, skin->getVertexWeightsInput("JOINT"),
        skin->getVertexWeightsInput("WEIGHT"), skin->getJointsInput("INV_BIND_MATRIX"),
        skin->getJointsInput("JOINT"));
}

/// The same direction for each vertex: its fourth number is 0, so that nothing moves it.
scene::StreamPtr makeDirections(int axis, std::size_t count)
{
    std::vector<float> data(4 * count, 0.0F);
    for (std::size_t i = 0; i < count; ++i)
    {
        data[4 * i + static_cast<std::size_t>(axis)] = 1.0F;
    }
    const auto stream = boost::make_shared<scene::Stream>("directions", 4, true);
    stream->setData(std::move(data));
    stream->setCount(static_cast<int>(count));
    return stream;
}
} // namespace

std::optional<SkinInstance> findSkin(const scene::NodePtr& node,
                                     const scene::InstanceControllerPtr& instance)
{
    SkinInstance result{node, instance, {}, {}, {}};
    const scene::ControllerPtr controller = instance->getController();
    const scene::InstanceGeometryPtr geometry = instance->getInstanceGeometry();
    if (controller && geometry)
    {
        result.skin = controller->getSkin();
        result.mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry->getGeometry());
    }
    if (result.mesh)
    {
        const auto* positions =
            scene::findStreamMapping(result.mesh->getVertices(), scene::POSITION);
        result.positions = positions != nullptr ? positions->getStream() : scene::StreamPtr();
    }
    return result.skin && result.positions ? std::make_optional(result) : std::nullopt;
}

std::vector<SkinInstance> findSkins(const scene::SceneManagerPtr& scene)
{
    std::vector<SkinInstance> skins;
    for (const scene::NodePtr& node : scene->getNodeArray())
    {
        for (const scene::InstanceControllerPtr& instance : node->getInstancedControllers())
        {
            if (const std::optional<SkinInstance> skin = findSkin(node, instance))
            {
                skins.push_back(*skin);
            }
        }
    }
    return skins;
}

std::vector<scene::NodePtr> findJoints(const scene::SceneManagerPtr& scene,
                                       const SkinInstance& skin)
{
    std::vector<scene::NodePtr> joints;
    if (const scene::StreamPtr names = skin.skin->getJointsInput("JOINT"))
    {
        for (const std::string& name : names->getNameList())
        {
            joints.push_back(scene->getNodeByID(name));
        }
    }
    return joints;
}

bool canBeSkinned(const scene::SceneManagerPtr& scene, const SkinInstance& instance)
{
    const scene::Skin& skin = *instance.skin;
    const scene::StreamPtr names = skin.getVertexWeightsInput("JOINT");
    if (!names || !skin.getVertexWeightsInput("WEIGHT") || !skin.getJointsInput("JOINT") ||
        !skin.getJointsInput("INV_BIND_MATRIX"))
    {
        return false;
    }
    const std::vector<std::string>& list = names->getNameList();
    return std::all_of(list.begin(), list.end(),
                       [&scene](const std::string& name) { return scene->getNodeByID(name); });
}

scene::StreamPtr skinPositions(const scene::SceneManagerPtr& scene, const SkinInstance& skin)
{
    return skinStream(scene, skin, skin.positions);
}

std::vector<Eigen::Matrix3d> skinDirections(const scene::SceneManagerPtr& scene,
                                            const SkinInstance& skin)
{
    std::vector<Eigen::Matrix3d> linear(getPoints(*skin.positions).size());
    for (int axis = 0; axis < 3; ++axis)
    {
        const scene::StreamPtr turned =
            skinStream(scene, skin, makeDirections(axis, linear.size()));
        const std::vector<Eigen::Vector3d> columns = getPoints(*turned);
        for (std::size_t i = 0; i < linear.size(); ++i)
        {
            linear[i].col(axis) = columns[i];
        }
    }
    return linear;
}

std::vector<Eigen::Vector3d> getBoundPoints(const SkinInstance& skin)
{
    const Eigen::Matrix4d bound =
        (skin.node->getCombinedTransformations() * skin.skin->getBindShapeMatrix()).cast<double>();
    std::vector<Eigen::Vector3d> points = getPoints(*skin.positions);
    for (Eigen::Vector3d& point : points)
    {
        point = (bound * point.homogeneous()).head<3>().eval();
    }
    return points;
}

std::vector<Eigen::Vector3d> getPoints(const scene::Stream& stream)
{
    std::vector<Eigen::Vector3d> points;
    const auto stride = static_cast<std::size_t>(std::max(stream.getStride(), 0));
    const std::vector<float>& data = stream.getData();
    for (std::size_t i = 0; stride > 0 && i + stride <= data.size(); i += stride)
    {
        Eigen::Vector3d point = Eigen::Vector3d::Zero();
        for (std::size_t axis = 0; axis < std::min<std::size_t>(stride, 3); ++axis)
        {
            point[static_cast<int>(axis)] = data[i + axis];
        }
        points.push_back(point);
    }
    return points;
}

Displacement findLargestDisplacement(const std::vector<Eigen::Vector3d>& from,
                                     const std::vector<Eigen::Vector3d>& to)
{
    Displacement largest;
    for (std::size_t i = 0; i < std::min(from.size(), to.size()); ++i)
    {
        const double distance = (to[i] - from[i]).norm();
        if (std::isnan(distance))
        {
            return {distance, i};
        }
        if (distance > largest.distance)
        {
            largest = {distance, i};
        }
    }
    return largest;
}
} // namespace velmoran::examples
