#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>

namespace velmoran::scene
{
/// Something that a scene's worker thread drives, turn by turn.
///
/// Ownership: the scene holds its controllers; they remember it weakly.
class VELMORAN_SCENE_EXPORT ISceneController
{
public:
    /// Whether this controller only reads the scene. In each turn those that write
    /// run before those that read. Asked once, when the controller is added.
    virtual bool isReadOnly() = 0;

    /// Tells the controller which scene it now belongs to. Called without any lock
    /// of the scene, on the thread that adds the controller; `update` may already run
    /// at the same time. The scene holds its controllers: one that kept a strong
    /// handle to its scene would keep both alive for ever.
    virtual void attach(boost::shared_ptr<SceneManager> scene) = 0;

    /// One turn; `elapsed` is the time since the one before and may be a special
    /// value such as not-a-date-time. Called on the worker thread under the scene
    /// lock. Answers whether the scene was changed. Must not throw: an exception is caught
    /// by nobody and ends the program. Must not lock the scene; may add and remove controllers.
    virtual bool update(boost::posix_time::time_duration elapsed) = 0;

    virtual ~ISceneController();
};
} // namespace velmoran::scene
