// placeholder until the evaluation stands
#include "scene/animation/AnimationManager.h"
#include "scene/animation/PlaybackPlan.h"

namespace velmoran::scene
{
bool AnimationManager::update(boost::posix_time::time_duration)
{
    return false;
}
void AnimationManager::setUpAnimation(const AnimationPtr&) {}
void AnimationManager::playAnimation(const AnimationPtr&, EvaluatedTransformations&) {}
} // namespace velmoran::scene
