// Keyframe editing and the animation camera of `AnimationManager`.

#include "core/utils/Matrix.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/PlaybackPlan.h"
#include "scene/graph/Camera.h"
#include "scene/graph/CameraInstance.h"
#include "scene/graph/Node.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace velmoran::scene
{
namespace
{
constexpr const char* KEYED_SID = "transform";

bool hasMatrix(const Node& node)
{
    const std::vector<ITransformationPtr>& list = node.getOriginalTransformations();
    return std::any_of(list.begin(), list.end(),
                       [](const ITransformationPtr& transformation)
                       { return transformation->getType() == ITransformation::MATRIX; });
}

/// Makes a matrix with the node's local transform its only transformation.
void convertToMatrix(Node& node)
{
    const auto matrix = boost::make_shared<TransformationMatrix>(node.getTransformations().data());
    matrix->setSid(KEYED_SID);
    node.setOriginalTransformations({matrix});
}

bool holdsCamera(const Node& node, const CameraPtr& camera)
{
    const CameraPtr first = node.getInstanceCamera(0);
    return first && camera && first->getID() == camera->getID();
}

/// Erases the entries that equal `time` in one pass that looks at each index once: the
/// entry that slides into an erased one's place stays.
void eraseInOnePass(std::vector<float>& times, float time)
{
    for (std::size_t i = 0; i < times.size(); ++i)
    {
        if (times[i] == time)
        {
            times.erase(times.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
}
} // namespace

// Keyframe editing

void AnimationManager::insertKeyframe(float time)
{
    const SceneManagerPtr scene = m_sceneManager.lock();
    if (!scene || !std::isfinite(time))
    {
        return;
    }
    const std::vector<NodePtr> nodes = scene->getNodeArray();
    for (const NodePtr& node : nodes)
    {
        if (!hasMatrix(*node))
        {
            convertToMatrix(*node);
            m_targetedTransformations[node].emplace_back(KEYED_SID);
        }
    }
    const AnimationPtr animation = m_animation;
    if (!animation)
    {
        return;
    }
    removeKeyFrame(animation, time);
    pause();
    insertFrameTime(time);

    const CameraInstancePtr instance = scene->getCameraInstanceAt(0);
    const CameraPtr defaultCamera = instance ? instance->getCamera() : CameraPtr();
    for (std::size_t i = 1; i < nodes.size(); ++i) // the root is never keyed
    {
        if (!holdsCamera(*nodes[i], defaultCamera) && nodes[i]->getID() != scene->getSceneID())
        {
            animation->insertKeyFrame(nodes[i], time);
        }
    }
    m_loopDuration = animation->getDuration();
}

void AnimationManager::removeKeyFrame(const AnimationPtr& animation, float time)
{
    if (!animation)
    {
        return;
    }
    const AnimationPtr kept = animation;
    eraseInOnePass(m_frameTimes, time);
    for (const AnimationPtr& child : kept->getChildAnimations())
    {
        child->removeKeyFrame(time);
    }
    m_loopDuration = kept->getDuration();
}

void AnimationManager::insertFrameTime(float time)
{
    m_frameTimes.push_back(time);
}

void AnimationManager::removeFrameTime(float time)
{
    eraseInOnePass(m_frameTimes, time);
}

std::vector<float>& AnimationManager::getFrameTimes()
{
    return m_frameTimes;
}

const std::vector<float>& AnimationManager::getFrameTimes() const
{
    return m_frameTimes;
}

// Animation camera

CameraInstancePtr AnimationManager::getDefaultCamera()
{
    const SceneManagerPtr scene = m_sceneManager.lock();
    if (!scene)
    {
        return CameraInstancePtr();
    }
    const CameraInstancePtr first = scene->getCameraInstanceAt(0);
    if (!first)
    {
        scene->createNewCamera(Camera::PERSPECTIVE, "DefaultCamera", "");
    }
    return first;
}

void AnimationManager::addAnimationCamera()
{
    const SceneManagerPtr scene = m_sceneManager.lock();
    if (!scene)
    {
        return;
    }
    scene->createNewCamera(Camera::PERSPECTIVE, "AnimationCamera", "");
    const CameraInstancePtr instance =
        scene->getCameraInstanceAt(scene->getCameraInstanceCount() - 1);
    const NodePtr node = instance ? instance->getParentNode() : NodePtr();
    const CameraInstancePtr standard = getDefaultCamera();
    const NodePtr standardNode = standard ? standard->getParentNode() : NodePtr();
    if (node && standardNode)
    {
        // A copy: the setter overwrites what it reads where both are one node.
        const Eigen::Matrix4f matrix = standardNode->getTransformations();
        node->setTransformations(matrix);
    }
    if (node)
    {
        convertToMatrix(*node);
    }
}
} // namespace velmoran::scene
