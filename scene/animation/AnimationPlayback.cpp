// Turns of the worker, and evaluation, of `AnimationManager`.

#include "core/utils/AllOrNothing.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/ChannelBinding.h"
#include "scene/animation/PlaybackPlan.h"
#include "scene/graph/Node.h"
#include "scene/graph/PoseWriter.h"
#include "scene/graph/TransformParts.h"
#include "scene/graph/TransformationValues.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>

namespace velmoran::scene
{
namespace
{
using boost::posix_time::time_duration;

/// `time` moved by `step` towards `target` and not beyond it.
time_duration movedTowards(time_duration time, const time_duration& target,
                           const time_duration& step)
{
    if (time < target)
    {
        time = std::min(time + step, target);
    }
    if (time > target)
    {
        time = std::max(time - step, target);
    }
    return time < boost::posix_time::microseconds(-999) ? time_duration() : time;
}

/// The moment at which channels are evaluated, in seconds: whole milliseconds.
float evaluationTime(const time_duration& time)
{
    return static_cast<float>(static_cast<double>(time.total_milliseconds()) / 1000.0);
}

/// The product of the first `count` transformations of a list.
Eigen::Matrix4f productOfFirst(const std::vector<ITransformationPtr>& list, std::size_t count)
{
    Eigen::Matrix4f product = Eigen::Matrix4f::Identity();
    for (std::size_t i = 0; i < count; ++i)
    {
        product *= matrixOf(valuesOf(*list[i]));
    }
    return product;
}

/// A pose to be written into a node that others hear of.
struct HeardPose
{
    std::size_t place; ///< in the order of the nodes' handles
    NodePtr node;
    EvaluatedPose pose;
};

void putOnBase(EvaluatedPose& pose, const Eigen::Matrix4f* base)
{
    if (base != nullptr)
    {
        const Eigen::Matrix4f matrix = *base * pose.matrix;
        pose.matrix = composeTransform(matrix.topRightCorner<3, 1>(),
                                       withUnitColumns(matrix.topLeftCorner<3, 3>()),
                                       Eigen::Vector3f::Ones());
    }
}

Eigen::Matrix4f translationOf(const EvaluatedPose& pose)
{
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity();
    matrix.topRightCorner<3, 1>() = pose.matrix.topRightCorner<3, 1>();
    return matrix;
}

Eigen::Matrix4f rotationOf(const EvaluatedPose& pose)
{
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity();
    matrix.topLeftCorner<3, 3>() = pose.matrix.topLeftCorner<3, 3>();
    return matrix;
}

Eigen::Matrix4f scaleOf(const EvaluatedPose& pose)
{
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity();
    matrix.diagonal().head<3>() = pose.scale.head<3>();
    return matrix;
}
} // namespace

bool AnimationManager::update(time_duration elapsed)
{
    // The animation comes first: until one is set, `attach` may be going on.
    const SceneManagerPtr scene = m_animation ? m_sceneManager.lock() : SceneManagerPtr();
    core::utils::UndoUnlessKept undo(
        [this, time = m_currentTime, refresh = m_refresh]
        {
            m_currentTime = time;
            m_refresh = refresh;
        });
    const bool written = scene && movePlayhead(elapsed.is_special() ? time_duration() : elapsed) &&
                         writePoses(scene);
    undo.keep();
    return written;
}

/// Whether there is anything to evaluate at the new place.
bool AnimationManager::movePlayhead(const time_duration& elapsed)
{
    bool stands = false;
    if (!m_paused)
    {
        m_currentTime += elapsed;
        m_currentTime -= m_currentTime >= m_loopDuration ? m_loopDuration : time_duration();
    }
    else
    {
        stands = m_currentTime.total_milliseconds() == m_timeTarget.total_milliseconds();
        m_currentTime =
            m_smooth ? movedTowards(m_currentTime, m_timeTarget, elapsed) : m_timeTarget;
    }
    if (stands && !std::exchange(m_refresh, false))
    {
        return false;
    }
    m_refresh = false;
    if (m_currentTime >= m_loopDuration)
    {
        m_currentTime = m_loopDuration;
        return false;
    }
    return true;
}

/// Whether any node was written.
bool AnimationManager::writePoses(const SceneManagerPtr& scene)
{
    PlaybackPlan& plan = preparePlan(scene);
    const PoseWriter writer(scene);

    // While a node that somebody listens to is written, handlers may change the scene and
    // this manager: what is left then is written from here.
    std::vector<HeardPose> heard;
    bool written = false;
    plan.evaluate(evaluationTime(m_currentTime),
                  [&](const PlaybackPlan::Driven& driven, EvaluatedPose& pose)
                  {
                      putOnBase(pose, driven.base);
                      if (!pose.isFinite())
                      {
                          return;
                      }
                      written = true;
                      if (writer.isSilent() && driven.ofScene)
                      {
                          PoseWriter::writeSilently(*driven.node, pose.matrix, pose.scale);
                      }
                      else
                      {
                          heard.push_back({driven.place, driven.node->shared_from_this(), pose});
                      }
                  });
    std::sort(heard.begin(), heard.end(),
              [](const HeardPose& a, const HeardPose& b) { return a.place < b.place; });
    for (const HeardPose& entry : heard)
    {
        PoseWriter::write(*entry.node, entry.pose.matrix, entry.pose.scale.head<3>());
    }
    return written;
}

/// The plan of the current animation, which is not empty, for the scene as it is now.
PlaybackPlan& AnimationManager::preparePlan(const SceneManagerPtr& scene)
{
    core::utils::UndoUnlessKept undo([this] { m_plan.reset(); }); // it may be half made
    if (!m_plan)
    {
        m_plan = std::make_unique<PlaybackPlan>(m_animation);
    }
    m_plan->update(
        scene,
        [this](const NodePtr& node, const std::vector<ChannelBinding>& channels)
        { return setUpNode(node, channels, m_targetedTransformations, m_baseMatrices); },
        *m_warnings);
    undo.keep();
    return *m_plan;
}

void AnimationManager::setUpAnimation(const AnimationPtr& animation)
{
    TargetedTransformations targets;
    BaseMatrices baseMatrices;
    const SceneManagerPtr scene = m_sceneManager.lock();
    if (animation && scene)
    {
        ChannelBinder binder(*scene, {}, nullptr);
        binder.bind(*animation);
        for (const auto& [node, channels] : binder.getBindings())
        {
            setUpNode(node, channels, targets, baseMatrices);
        }
    }
    m_plan.reset(); // it refers to the base matrices
    m_targetedTransformations.swap(targets);
    m_baseMatrices.swap(baseMatrices);
}

/// Enters what playback drives of a node, and answers its base matrix; null for none.
const Eigen::Matrix4f* AnimationManager::setUpNode(const NodePtr& node,
                                                   const std::vector<ChannelBinding>& channels,
                                                   TargetedTransformations& targets,
                                                   BaseMatrices& baseMatrices)
{
    std::vector<std::string>& sids = targets[node];
    for (const ChannelBinding& channel : channels)
    {
        if (std::find(sids.begin(), sids.end(), channel.sid) == sids.end())
        {
            sids.push_back(channel.sid);
        }
    }
    if (!isDrivenByMatrix(channels) || channels.front().entry == 0)
    {
        baseMatrices.erase(node);
        return nullptr;
    }
    Eigen::Matrix4f& base = baseMatrices[node];
    base = productOfFirst(node->getOriginalTransformations(), channels.front().entry);
    return &base;
}

void AnimationManager::playAnimation(const AnimationPtr& animation, EvaluatedTransformations& out)
{
    const SceneManagerPtr scene = m_sceneManager.lock();
    if (!animation || !scene)
    {
        return;
    }
    std::unique_ptr<PlaybackPlan> other;
    if (animation != m_animation)
    {
        other = std::make_unique<PlaybackPlan>(animation);
        other->update(
            scene, [](const NodePtr&, const std::vector<ChannelBinding>&) { return nullptr; },
            *m_warnings);
    }
    PlaybackPlan& plan = other ? *other : preparePlan(scene);
    plan.evaluate(evaluationTime(m_currentTime),
                  [&out](const PlaybackPlan::Driven& driven, const EvaluatedPose& pose)
                  {
                      if (pose.isFinite())
                      {
                          out[driven.node->shared_from_this()] = {translationOf(pose),
                                                                  rotationOf(pose), scaleOf(pose)};
                      }
                  });
}
} // namespace velmoran::scene
