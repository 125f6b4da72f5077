#pragma once

#include "scene/Forward.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>

namespace velmoran::examples
{
/// Poses a scene by an animation, one time after the other, on the calling thread.
///
/// Takes the scene's animation manager away from the scene's worker. Nobody else may read
/// or change the scene meanwhile.
class ScenePlayer
{
public:
    using Time = boost::posix_time::time_duration;

    /// The scene has an animation manager.
    ScenePlayer(const scene::SceneManagerPtr& scene, const scene::AnimationPtr& animation);

    /// Puts all animated nodes where they are at `time`, a time behind the end where they
    /// are at the end. A channel holds nothing behind its own last key: what it moves
    /// stays where it is.
    void show(Time time);

    /// Where the animation ends.
    Time getDuration() const;

private:
    Time m_duration;
    scene::AnimationManagerPtr m_manager;
};
} // namespace velmoran::examples
