// Keyframe editing and the animation camera of `AnimationManager`.

#include "core/utils/AllOrNothing.h"
#include "core/utils/Matrix.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/AnimationWalk.h"
#include "scene/animation/KeyInsertion.h"
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

boost::shared_ptr<TransformationMatrix> makeKeyedMatrix(const Node& node)
{
    auto matrix = boost::make_shared<TransformationMatrix>(node.getTransformations().data());
    matrix->setSid(KEYED_SID);
    return matrix;
}

/// Nodes whose only transformation becomes a matrix with their local transform, until it is
/// taken back.
class MatrixNodes
{
public:
    explicit MatrixNodes(AnimationManager::TargetedTransformations& targets) : m_targets(targets) {}

    ~MatrixNodes()
    {
        while (!m_isKept && !m_nodes.empty())
        {
            Entry& entry = m_nodes.back();
            const auto sids = m_targets.find(entry.node);
            sids->second.pop_back();
            if (sids->second.empty())
            {
                m_targets.erase(sids);
            }
            entry.node->exchangeOriginalTransformations(entry.list);
            m_nodes.pop_back();
        }
    }

    MatrixNodes(const MatrixNodes&) = delete;
    MatrixNodes& operator=(const MatrixNodes&) = delete;

    void convert(const NodePtr& node)
    {
        core::utils::makeRoom(m_nodes);
        std::vector<ITransformationPtr> list = {makeKeyedMatrix(*node)};
        const auto [sids, isNew] = m_targets.try_emplace(node);
        core::utils::UndoUnlessKept undo(
            [this, place = sids, isNew = isNew]
            {
                if (isNew)
                {
                    m_targets.erase(place);
                }
            });
        sids->second.emplace_back(KEYED_SID);
        undo.keep();
        node->exchangeOriginalTransformations(list);
        m_nodes.push_back({node, std::move(list)});
    }

    void keep() { m_isKept = true; }

private:
    struct Entry
    {
        NodePtr node;
        std::vector<ITransformationPtr> list; ///< that it had before
    };

    AnimationManager::TargetedTransformations& m_targets;
    std::vector<Entry> m_nodes;
    bool m_isKept = false;
};

/// The animations below the children of `root`, in the order in which a key is removed.
std::vector<Animation*> animationsBelow(const Animation& root)
{
    std::vector<Animation*> all;
    for (const AnimationPtr& child : root.getChildAnimations())
    {
        const std::vector<Animation*> below = childrenFirst(*child);
        all.insert(all.end(), below.begin(), below.end());
    }
    return all;
}

boost::posix_time::time_duration durationOf(const std::vector<const Animation*>& animations)
{
    boost::posix_time::time_duration duration;
    for (const Animation* const animation : animations)
    {
        duration = std::max(duration, animation->getOwnDuration());
    }
    return duration;
}

/// Keys in all matrices of a node.
void prepareKeys(KeyInsertion& insertion, const NodePtr& node)
{
    for (const ITransformationPtr& transformation : node->getOriginalTransformations())
    {
        if (transformation->getType() == ITransformation::MATRIX)
        {
            insertion.prepare(node, transformation);
        }
    }
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
    MatrixNodes converted(m_targetedTransformations);
    for (const NodePtr& node : nodes)
    {
        if (!hasMatrix(*node))
        {
            converted.convert(node);
        }
    }
    const AnimationPtr animation = m_animation;
    if (animation)
    {
        insertKeys(*animation, nodes, time);
    }
    converted.keep();
}

/// Puts keys of `nodes` into the current animation, or none.
void AnimationManager::insertKeys(Animation& animation, const std::vector<NodePtr>& nodes,
                                  float time)
{
    const SceneManagerPtr scene = m_sceneManager.lock();
    KeyInsertion insertion(animation);
    const CameraInstancePtr instance = scene->getCameraInstanceAt(0);
    const CameraPtr defaultCamera = instance ? instance->getCamera() : CameraPtr();
    for (std::size_t i = 1; i < nodes.size(); ++i) // the root is never keyed
    {
        if (!holdsCamera(*nodes[i], defaultCamera) && nodes[i]->getID() != scene->getSceneID())
        {
            prepareKeys(insertion, nodes[i]);
        }
    }
    const std::vector<Animation*> below = animationsBelow(animation);
    const std::vector<const Animation*> all = childrenFirst<const Animation>(animation);
    core::utils::makeRoom(m_frameTimes); // nothing fails from here on

    removeKeys(below, time);
    pause();
    insertFrameTime(time);
    insertion.apply(time);
    m_loopDuration = durationOf(all);
}

void AnimationManager::removeKeyFrame(const AnimationPtr& animation, float time)
{
    if (!animation)
    {
        return;
    }
    const AnimationPtr kept = animation;
    const std::vector<Animation*> below = animationsBelow(*kept);
    const std::vector<const Animation*> all = childrenFirst<const Animation>(*kept);
    removeKeys(below, time);
    m_loopDuration = durationOf(all);
}

void AnimationManager::removeKeys(const std::vector<Animation*>& animations, float time)
{
    eraseInOnePass(m_frameTimes, time);
    for (Animation* const animation : animations)
    {
        animation->removeOwnKeyFrame(time);
    }
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
    const auto matrix = boost::make_shared<TransformationMatrix>();
    matrix->setSid(KEYED_SID);
    std::vector<ITransformationPtr> list = {matrix};
    scene->createNewCamera(Camera::PERSPECTIVE, "AnimationCamera", "");
    const CameraInstancePtr instance =
        scene->getCameraInstanceAt(scene->getCameraInstanceCount() - 1);
    const NodePtr node = instance ? instance->getParentNode() : NodePtr();
    const CameraInstancePtr standard = getDefaultCamera();
    const NodePtr standardNode = standard ? standard->getParentNode() : NodePtr();
    if (node && standardNode)
    {
        // A copy: the setter overwrites what it reads where both are one node.
        const Eigen::Matrix4f local = standardNode->getTransformations();
        node->setTransformations(local);
    }
    if (node)
    {
        matrix->setMatrix(node->getTransformations().data());
        node->exchangeOriginalTransformations(list);
    }
}
} // namespace velmoran::scene
