#include "scene/animation/AnimationManager.h"

namespace velmoran::scene
{
AnimationManager::AnimationManager() = default;

AnimationManager::~AnimationManager() = default;

bool AnimationManager::isReadOnly()
{
    return false;
}

void AnimationManager::attach(boost::shared_ptr<SceneManager> scene)
{
    m_sceneManager = scene;
}

bool AnimationManager::update(boost::posix_time::time_duration)
{
    return false;
}
} // namespace velmoran::scene
