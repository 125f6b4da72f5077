#include "scene/manager/AvatarMorphing.h"

#include "core/event/EventManager.h"
#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Skin.h"
#include "scene/deform/SkinBinding.h"
#include "scene/deform/WorldMatrices.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace velmoran::scene
{
namespace
{
using JointsByID = std::unordered_map<std::string, NodePtr>; ///< the first of each ID

std::vector<NodePtr> jointsOf(const SceneManagerPtr& scene)
{
    std::vector<NodePtr> joints;
    std::vector<int> parents;
    SceneManager::transverseSceneForJoints(scene->getRoot(), joints, parents);
    return joints;
}

InstanceControllerPtr controllerAt(const NodePtr& node)
{
    return node ? node->getInstanceController(0) : InstanceControllerPtr();
}

SkinPtr skinOf(const InstanceControllerPtr& instance)
{
    const ControllerPtr controller = instance->getController();
    return controller ? controller->getSkin() : SkinPtr();
}

MeshPtr meshOf(const SceneManagerPtr& scene)
{
    return boost::dynamic_pointer_cast<Mesh>(
        scene->getGeometryManager()->getGeometry("human-template-lib"));
}

Eigen::Vector3d worldPosition(WorldMatrices& worlds, const Node& node)
{
    return worlds.of(node).topRightCorner<3, 1>();
}
} // namespace

AvatarMorphing::AvatarMorphing(const SceneManagerPtr& scene, const SceneManagerPtr& target)
{
    m_own.scene = scene;
    m_target.scene = target;
}

AvatarMorphing::~AvatarMorphing()
{
    if (m_isKept)
    {
        return;
    }
    for (auto& [skin, binding] : m_bindings)
    {
        skin->restoreBinding(std::move(binding));
    }
    restoreVertices();
    restorePoses();
}

void AvatarMorphing::rememberPose(const NodePtr& node)
{
    if (node)
    {
        m_poses.push_back({node, node->getTranslation(), node->getRotation(), node->getScale()});
    }
}

void AvatarMorphing::rememberBinding(const SkinPtr& skin)
{
    if (skin)
    {
        m_bindings.emplace_back(skin, skin->getBinding());
    }
}

void AvatarMorphing::restorePoses()
{
    for (const Pose& pose : m_poses)
    {
        try
        {
            pose.node->setTranslation(pose.translation);
            pose.node->setRotation(pose.rotation);
            pose.node->setScale(pose.scale);
        }
        catch (...) // of a listener
        {
        }
    }
}

void AvatarMorphing::restoreVertices()
{
    if (!m_vertices)
    {
        return;
    }
    m_vertices->mutableData().swap(m_floats);
    if (m_users)
    {
        m_users->replace(m_vertices, m_sharedVertices);
    }
    m_own.mesh->forgetBV();
}

void AvatarMorphing::resetPoses()
{
    const NodePtr sacra[] = {m_own.scene->getNodeByID("sacrum"),
                             m_target.scene->getNodeByID("sacrum")};
    std::for_each(std::begin(sacra), std::end(sacra),
                  [this](const NodePtr& sacrum) { rememberPose(sacrum); });
    for (const NodePtr& joint : jointsOf(m_own.scene))
    {
        rememberPose(joint);
    }
    for (const NodePtr& sacrum : sacra)
    {
        if (sacrum)
        {
            sacrum->setTransformations(Eigen::Matrix4f(Eigen::Matrix4f::Identity()));
        }
    }
}

std::string AvatarMorphing::findAvatars()
{
    m_own.node = m_own.scene->getNodeByID("human-template");
    m_target.node = m_target.scene->getNodeByID("human-template");
    const InstanceControllerPtr own = controllerAt(m_own.node);
    const InstanceControllerPtr target = controllerAt(m_target.node);
    if (!own || !target)
    {
        return "Invalid morph targets. Missing avatar controller.";
    }
    m_own.skin = skinOf(own);
    m_target.skin = skinOf(target);
    if (!m_own.skin || !m_target.skin)
    {
        return "Invalid morph targets. Missing avatar skin.";
    }
    rememberBinding(m_own.skin);
    for (const ControllerPtr& controller : m_own.scene->getControllersLibrary())
    {
        if (controller->getSkin() != m_own.skin)
        {
            rememberBinding(controller->getSkin());
        }
    }
    m_own.mesh = meshOf(m_own.scene);
    m_target.mesh = meshOf(m_target.scene);
    return m_own.mesh && m_target.mesh ? "" : "Invalid morph targets. Missing avatar geometry.";
}

/// The stream of the positions; that of the first input when none is called so.
StreamPtr AvatarMorphing::verticesOf(const Avatar& avatar)
{
    const std::vector<StreamMapping>& vertices = avatar.mesh->getVertices();
    const StreamMapping* const positions = findStreamMapping(vertices, POSITION);
    return positions != nullptr ? positions->getStream()
           : vertices.empty()   ? StreamPtr()
                                : vertices.front().getStream();
}

StreamPtr AvatarMorphing::poseOf(const Avatar& avatar)
{
    const Skin& skin = *avatar.skin;
    return SceneManager::calculateSkinnedVerticesStream(
        avatar.scene, avatar.node, verticesOf(avatar), avatar.skin,
        skin.getVertexWeightsInput("JOINT"), skin.getVertexWeightsInput("WEIGHT"),
        skin.getJointsInput("INV_BIND_MATRIX"), skin.getJointsInput("JOINT"));
}

/// The own vertices for writing. Two meshes may share them after a merge; the target keeps
/// its own then.
StreamPtr AvatarMorphing::ownVertices()
{
    const StreamPtr vertices = verticesOf(m_own);
    if (m_own.mesh == m_target.mesh || verticesOf(m_target) != vertices)
    {
        return vertices;
    }
    auto users = std::make_unique<const StreamUsers>(*m_own.scene);
    StreamPtr copy = boost::make_shared<Stream>(*vertices);
    users->replace(vertices, copy);
    m_users = std::move(users);
    m_sharedVertices = vertices;
    return copy;
}

bool AvatarMorphing::blendVertices(float ratio)
{
    const StreamPtr own = poseOf(m_own);
    const StreamPtr target = poseOf(m_target);
    if (!own || !target || own->getCount() != target->getCount() ||
        own->getStride() != target->getStride())
    {
        return false;
    }
    const std::vector<float>& ownPose = own->getData();
    const std::vector<float>& targetPose = target->getData();
    std::vector<float> blended = verticesOf(m_own)->getData();
    for (std::size_t i = 0; i < ownPose.size(); ++i)
    {
        blended[i] = ownPose[i] * ratio + targetPose[i] * (1.0F - ratio);
    }
    m_vertices = ownVertices();
    m_vertices->mutableData().swap(blended);
    m_floats.swap(blended);
    m_own.mesh->forgetBV();
    return true;
}

SceneManagerPtr AvatarMorphing::blendJoints(float ratio) const
{
    JointsByID targets;
    for (const NodePtr& joint : jointsOf(m_target.scene))
    {
        targets.try_emplace(joint->getID(), joint);
    }
    // Equal positions are kept apart: each belongs to a joint.
    const StreamPtr positions = boost::make_shared<Stream>("VMR_JOINTS_STREAM", 3, true);
    WorldMatrices worlds;
    for (const NodePtr& joint : jointsOf(m_own.scene))
    {
        const auto target = targets.find(joint->getID());
        if (target != targets.end())
        {
            const Eigen::Vector3f own = worldPosition(worlds, *joint).cast<float>();
            const Eigen::Vector3f other = worldPosition(worlds, *target->second).cast<float>();
            const Eigen::Vector3f blended = own * ratio + other * (1.0F - ratio);
            positions->insertValue(3, blended.data());
        }
    }

    const MeshPtr mesh = boost::make_shared<Mesh>("VMR_JOINTS_MESH", "");
    mesh->addStream(positions);
    mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    SceneManagerPtr scene = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    scene->getGeometryManager()->addGeometry(mesh);
    return scene;
}

void AvatarMorphing::bind() const
{
    WorldMatrices worlds;
    const auto findJoint = [this](const std::string& name)
    { return m_own.scene->getNodeByID(name); };
    bindToPose(*m_own.skin, findJoint, worlds, worlds.of(*m_own.node));
}
} // namespace velmoran::scene
