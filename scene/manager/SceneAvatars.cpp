// Avatars: posing, reshaping and blending of skinned meshes.

#include "core/event/EventManager.h"
#include "scene/EventTypes.h"
#include "scene/deform/JointPalette.h"
#include "scene/deform/Skin.h"
#include "scene/deform/SkinningKernel.h"
#include "scene/deform/WorldMatrices.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/manager/AvatarMorphing.h"
#include "scene/manager/JointReplacement.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <unordered_map>

namespace velmoran::scene
{
namespace
{
/// The influences of a skin without those of missing joints, to which no weight is left.
std::vector<int> withoutMissing(const std::vector<int>& v, const std::vector<bool>& isMissing)
{
    std::vector<int> kept(v);
    for (std::size_t i = 0; i + 1 < kept.size(); i += 2)
    {
        const auto joint = static_cast<std::size_t>(kept[i]);
        if (joint < isMissing.size() && isMissing[joint])
        {
            kept[i + 1] = -1;
        }
    }
    return kept;
}

std::vector<float> pose(const Stream& vertices, const Skin& skin, const StreamPtr& weights,
                        const JointPalette& palette)
{
    SkinArrays arrays;
    arrays.vertices = SkinArrays::Array<float>(vertices.getData());
    arrays.stride = static_cast<std::size_t>(vertices.getStride());
    arrays.vcount = SkinArrays::Array<unsigned int>(skin.getVCount());
    arrays.palette = SkinArrays::Array<PoseMatrix>(palette.matrices);
    if (weights)
    {
        arrays.weights = SkinArrays::Array<float>(weights->getData());
    }
    if (palette.isComplete)
    {
        arrays.v = SkinArrays::Array<int>(skin.getV());
        return skinVertices(arrays);
    }
    const std::vector<int> v = withoutMissing(skin.getV(), palette.isMissing);
    arrays.v = SkinArrays::Array<int>(v);
    return skinVertices(arrays);
}
} // namespace

StreamPtr SceneManager::calculateSkinnedVerticesStream(
    const SceneManagerPtr& sceneManager, const NodePtr& node, const StreamPtr& vertices,
    const SkinPtr& skin, const StreamPtr& weightJoints, const StreamPtr& weights,
    const StreamPtr& inverseBindMatrices, const StreamPtr& bindJoints)
{
    if (!vertices)
    {
        return StreamPtr();
    }
    const StreamPtr posed =
        boost::make_shared<Stream>(vertices->getID(), vertices->getStride(), true);
    if (vertices->getStride() <= 0)
    {
        return posed;
    }
    const Skin none((IGeometryPtr()));
    const Skin& influences = skin ? *skin : none;

    WorldMatrices worlds;
    const Eigen::Matrix4d meshWorld =
        node ? worlds.of(*node) : Eigen::Matrix4d(Eigen::Matrix4d::Identity());
    const auto findJoint = [&sceneManager](const std::string& name)
    { return sceneManager ? sceneManager->getNodeByID(name) : NodePtr(); };
    const JointPalette palette =
        makeJointPalette({weightJoints, bindJoints, inverseBindMatrices}, findJoint, worlds,
                         meshWorld, influences.getBindShapeMatrix().cast<double>());

    std::vector<float> data = pose(*vertices, influences, weights, palette);
    posed->setCount(static_cast<int>(data.size() / static_cast<std::size_t>(posed->getStride())));
    posed->setData(std::move(data));
    return posed;
}

void SceneManager::transverseSceneForJoints(const NodePtr& node, std::vector<NodePtr>& joints,
                                            std::vector<int>& parents)
{
    if (!node)
    {
        return;
    }
    const auto isJoint = [](const NodePtr& candidate)
    { return candidate && candidate->getType() == "JOINT"; };
    std::unordered_map<const Node*, int> indices; // in `joints`, the first of each node
    for (std::size_t i = 0; i < joints.size(); ++i)
    {
        indices.try_emplace(joints[i].get(), static_cast<int>(i));
    }
    for (const NodePtr& joint : node->getNodesBelow())
    {
        if (!isJoint(joint))
        {
            continue;
        }
        indices.try_emplace(joint.get(), static_cast<int>(joints.size()));
        joints.push_back(joint);
        const NodePtr parent = joint->getParent();
        const auto found = isJoint(parent) ? indices.find(parent.get()) : indices.end();
        parents.push_back(found == indices.end() ? -1 : found->second);
    }
}

void SceneManager::replaceJoints(const SceneManagerPtr& joints)
{
    replaceJoints(joints, true);
}

void SceneManager::replaceJoints(const SceneManagerPtr& joints, bool turnsSacrum)
{
    if (!joints)
    {
        return;
    }
    const SceneManagerPtr self = weak_from_this().lock(); // listeners may let go
    JointReplacement replacement(m_root, m_controllers.items());
    const std::string fault = replacement.read(*joints);
    if (!fault.empty())
    {
        m_logger << fault;
        return;
    }
    replacement.apply(getNodeByID("sacrum"), turnsSacrum);
}

void SceneManager::morph(const SceneManagerPtr& target, float ratio)
{
    if (!target)
    {
        return;
    }
    const auto report = [this](const std::string& message)
    { raise(events::displayMessageAt(), message + ", 10, 10"); };
    if (!(ratio >= 0.0F && ratio <= 1.0F)) // a NaN is not inside
    {
        report("Invalid morph ratio. Morphing failed.");
        return;
    }
    AvatarMorphing morphing(shared_from_this(), target);
    morphing.resetPoses();
    const std::string missing = morphing.findAvatars();
    if (!missing.empty())
    {
        morphing.keep();
        report(missing);
        return;
    }
    const bool isBlended = morphing.blendVertices(ratio);
    replaceJoints(morphing.blendJoints(ratio), false);
    if (isBlended)
    {
        morphing.bind();
    }
    morphing.keep();
}
} // namespace velmoran::scene
