#pragma once

#include "core/Forward.h"
#include "scene/Forward.h"

#include <boost/thread/thread.hpp>

#include <memory>
#include <mutex>

namespace velmoran::scene
{
/// The thread of a scene that drives its controllers, and the locks around it.
///
/// | state   | from               | goes on with                                        |
/// |---------|--------------------|-----------------------------------------------------|
/// | started | the constructor    | which returns when the thread runs                  |
/// | turning | then               | update under both locks, announce, sleep 10 ms      |
/// | stopped | `stop`, destructor | no further update; the thread has ended, or ends    |
/// |         |                    | after this turn when it stopped itself              |
///
/// A `std::bad_alloc` out of a controller or a handler ends what that does in this turn, and
/// nothing else.
/// What the thread touches belongs to a state that it shares with this object, so
/// that the object may be destroyed on the thread itself.
/// Threads: every operation may be called from any thread, `unlockScene` from the one
///     that locked. A turn takes the lock of the controller list and the scene lock
///     together: it never waits for one while it holds the other.
class SceneWorker
{
public:
    SceneWorker(const core::system::IClockPtr& clock,
                const core::event::EventManagerPtr& eventManager);

    /// Stops as `stop` does.
    ~SceneWorker();

    SceneWorker(const SceneWorker&) = delete;
    SceneWorker& operator=(const SceneWorker&) = delete;

    /// Ends the thread and waits for it, unless called on the thread itself.
    void stop();

    void setClock(core::system::IClockPtr clock);
    core::system::IClockPtr getClock() const;

    /// Where "SyncScene" is raised; may be empty.
    void setEventManager(core::event::EventManagerPtr eventManager);

    void lockScene();
    void unlockScene();

    /// Adds behind all others what only reads, in front of them what writes.
    void addSceneController(const ISceneControllerPtr& controller);

    /// Takes out the first entry of `controller`.
    void removeSceneController(const ISceneControllerPtr& controller);

    /// Lets go of all controllers; from a controller's `update`, after the turn.
    void clearSceneControllers();

    /// Keeps `object` until the running turn has let go of its controllers; nothing when
    /// the calling thread is not the worker in a turn.
    void holdForTurn(boost::shared_ptr<void> object);

private:
    struct State;

    static void run(const std::shared_ptr<State>& state);

    const std::shared_ptr<State> m_state;
    std::mutex m_joinMutex;
    boost::thread m_thread;
};
} // namespace velmoran::scene
