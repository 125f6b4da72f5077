#include "examples/scenetool/ScenePlayer.h"

#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace velmoran::examples
{
namespace
{
/// `animation` with a second of nothing behind it. A manager evaluates nothing where its
/// loop ends; in the longer loop the end of the animation is a time like any other.
scene::AnimationPtr lengthen(const scene::AnimationPtr& animation)
{
    const float end =
        static_cast<float>(animation->getDuration().total_milliseconds()) / 1000.0F + 1.0F;
    const auto times = boost::make_shared<scene::Stream>("end", 1, false);
    times->addParam("TIME", "float");
    times->insertValue(1, &end);
    const auto sampler = boost::make_shared<scene::Sampler>("end");
    sampler->addInput("INPUT", times);
    const auto longer = boost::make_shared<scene::Animation>("longer", "");
    longer->addAnimation(animation);
    longer->addChannel(sampler, "");
    return longer;
}
} // namespace

ScenePlayer::ScenePlayer(const scene::SceneManagerPtr& scene, const scene::AnimationPtr& animation)
    : m_duration(animation->getDuration()), m_manager(scene->getAnimationManager())
{
    scene->removeSceneController(m_manager);
    m_manager->setAnimation(lengthen(animation));
    m_manager->pause();
}

void ScenePlayer::show(Time time)
{
    m_manager->setTime(std::min(time, m_duration));
    m_manager->update(Time());
}

ScenePlayer::Time ScenePlayer::getDuration() const
{
    return m_duration;
}
} // namespace velmoran::examples
