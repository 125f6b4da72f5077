#include "scene/animation/AnimationManager.h"

#include "core/logger/BasicDecorator.h"
#include "core/logger/ConsoleWriter.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationWalk.h"
#include "scene/animation/ChannelBinding.h"
#include "scene/animation/ChannelNames.h"
#include "scene/animation/PlaybackPlan.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace velmoran::scene
{
AnimationManager::AnimationManager() : m_warnings(std::make_unique<ChannelWarnings>(m_logger))
{
    const auto writer = boost::make_shared<core::logger::ConsoleWriter>();
    writer->setDecorator(boost::make_shared<core::logger::BasicDecorator>());
    m_logger.addWriter(writer);
}

AnimationManager::~AnimationManager() = default;

// Scene controller

bool AnimationManager::isReadOnly()
{
    return false;
}

void AnimationManager::attach(boost::shared_ptr<SceneManager> scene)
{
    m_sceneManager = scene;
    m_plan.reset();
}

// Current animation

void AnimationManager::setAnimation(const AnimationPtr& animation)
{
    const Duration duration = animation ? animation->getDuration() : Duration();
    setUpAnimation(animation);
    m_animation = animation;
    m_warnings->clear();
    m_loopDuration = duration;
}

AnimationPtr AnimationManager::getAnimation() const
{
    return m_animation;
}

// Playhead

void AnimationManager::pause()
{
    m_paused = true;
    m_timeTarget = m_currentTime;
}

void AnimationManager::resume()
{
    m_paused = false;
}

bool AnimationManager::paused() const
{
    return m_paused;
}

void AnimationManager::setSmooth(bool smooth)
{
    m_smooth = smooth;
}

void AnimationManager::setTimeTarget(Duration time)
{
    m_timeTarget = time.is_special() ? m_timeTarget : time;
}

void AnimationManager::setTime(Duration time)
{
    if (!time.is_special())
    {
        m_timeTarget = time;
        m_currentTime = time;
        m_refresh = true;
    }
}

AnimationManager::Duration AnimationManager::getCurrentTime() const
{
    return m_currentTime;
}

AnimationManager::Duration AnimationManager::getLoopDuration() const
{
    return m_loopDuration;
}

// Evaluation

void AnimationManager::calculateFrameTimes(const AnimationPtr& animation,
                                           std::vector<float>& out) const
{
    if (!animation)
    {
        return;
    }
    // Equal floats hash alike, also 0.0 and -0.0. A NaN equals nothing and stays outside,
    // where many of one hash would be searched again and again.
    std::unordered_set<float> met;
    const auto isNew = [&met](float key) { return key != key || met.insert(key).second; };
    std::for_each(out.begin(), out.end(), isNew);
    for (const Animation* const part : childrenFirst(*animation))
    {
        for (const Animation::Channel& channel : part->getChannelArray())
        {
            const StreamPtr times =
                channel.first ? channel.first->getStreamBySemantic(Sampler::INPUT) : StreamPtr();
            const std::vector<float> keys = times ? times->getData() : std::vector<float>();
            std::copy_if(keys.begin(), keys.end(), std::back_inserter(out), isNew);
        }
    }
}

float AnimationManager::interpolateBezier(float p0, float p1, float t0, float t1, float t,
                                          Eigen::Vector2f, Eigen::Vector2f)
{
    return t1 - t0 == 0.0F ? p0 : p0 + (t - t0) * (p1 - p0) / (t1 - t0);
}

int AnimationManager::getInterpolationType(std::string name)
{
    return interpolationTypeOf(std::move(name));
}

int AnimationManager::indexOfCoordinateValue(std::string name)
{
    return coordinateIndexOf(std::move(name));
}

// Targets

const AnimationManager::TargetedTransformations&
AnimationManager::getTargetedTransformationsMap() const
{
    return m_targetedTransformations;
}

std::vector<std::string>
AnimationManager::getTargetedTransformationsForNode(const NodePtr& node) const
{
    const auto found = m_targetedTransformations.find(node);
    return found == m_targetedTransformations.end() ? std::vector<std::string>() : found->second;
}

bool AnimationManager::isNodeTargeted(const NodePtr& node) const
{
    return m_targetedTransformations.count(node) != 0;
}
} // namespace velmoran::scene
