#include "scene/manager/SceneWorker.h"

#include "core/event/EventManager.h"
#include "core/system/IClock.h"
#include "scene/EventTypes.h"
#include "scene/manager/ISceneController.h"

#include <boost/bind/bind.hpp>
#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/thread/condition_variable.hpp>
#include <boost/thread/lock_algorithms.hpp>
#include <boost/thread/locks.hpp>
#include <boost/thread/mutex.hpp>

#include <algorithm>
#include <atomic>
#include <new>
#include <thread>
#include <utility>
#include <vector>

namespace velmoran::scene
{
namespace
{
using Lock = boost::unique_lock<boost::mutex>;
using Controllers = std::vector<ISceneControllerPtr>;

const boost::posix_time::microseconds TURN_PAUSE(10000);

/// Holds a mutex as long as it lives, unless this thread holds it already.
class LockUnlessHeld
{
public:
    LockUnlessHeld(boost::mutex& mutex, bool held) : m_lock(mutex, boost::defer_lock)
    {
        if (!held)
        {
            m_lock.lock();
        }
    }

private:
    Lock m_lock;
};
} // namespace

struct SceneWorker::State
{
    /// Whether the calling thread is the worker inside a turn, with both locks held.
    bool isInTurn() const { return turnThread.load() == std::this_thread::get_id(); }

    std::pair<core::system::IClockPtr, core::event::EventManagerPtr> getSettings()
    {
        const Lock lock(settingsMutex);
        return {clock, eventManager};
    }

    /// Marks this thread as the one of a turn for as long as it lives.
    struct Turn
    {
        explicit Turn(State& s) : state(s) { state.turnThread = std::this_thread::get_id(); }
        ~Turn() { state.turnThread = std::thread::id(); }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        State& state;
    };

    bool updateControllers();
    void announceChange();

    std::atomic<bool> stopRequested{false};

    boost::mutex startMutex; ///< guards the following two, which then stay
    boost::condition_variable_any startCondition;
    bool threadStarted = false;
    std::thread::id workerThread;

    boost::mutex controllersMutex; ///< guards the controllers
    Controllers controllers;       ///< writers, newest first, then readers

    boost::mutex sceneMutex;                                    ///< the scene lock
    std::atomic<std::thread::id> turnThread{std::thread::id()}; ///< that of a running turn

    boost::mutex settingsMutex; ///< guards what follows; nothing is called under it
    core::system::IClockPtr clock;
    core::event::EventManagerPtr eventManager;

    // The worker's own once it runs.
    boost::posix_time::ptime lastUpdateTime;
    bool stoppedInTurn = false;
    boost::shared_ptr<void> heldForTurn; ///< released after the controllers of the turn
};

/// One locked update of all controllers; whether any of them changed the scene.
bool SceneWorker::State::updateControllers()
{
    // A controller may change the list, or drop the last handle of another one. The
    // copy goes after the locks, and after it what waits for that.
    boost::shared_ptr<void> held;
    Controllers turnControllers;
    Lock controllersLock(controllersMutex, boost::defer_lock);
    Lock sceneLock(sceneMutex, boost::defer_lock);
    boost::lock(controllersLock, sceneLock);
    turnControllers = controllers;

    bool changed = false;
    {
        const Turn turn(*this);
        const boost::posix_time::ptime now = getSettings().first->getTime();
        const boost::posix_time::time_duration elapsed = now - lastUpdateTime;
        for (const ISceneControllerPtr& controller : turnControllers)
        {
            if (stoppedInTurn)
            {
                break;
            }
            try
            {
                changed = controller->update(elapsed) || changed;
            }
            catch (const std::bad_alloc&) // it misses this turn, the others do not
            {
            }
        }
        lastUpdateTime = now;
    }
    held.swap(heldForTurn);
    return changed;
}

void SceneWorker::State::announceChange()
{
    const core::event::EventManagerPtr manager = getSettings().second;
    if (manager && manager->hasListeners(events::syncScene()))
    {
        manager->triggerEvent(core::event::Event(events::syncScene(), "", ""));
    }
}

SceneWorker::SceneWorker(const core::system::IClockPtr& clock,
                         const core::event::EventManagerPtr& eventManager)
    : m_state(std::make_shared<State>())
{
    m_state->clock = clock;
    m_state->eventManager = eventManager;
    m_state->lastUpdateTime = clock->getTime();
    m_thread = boost::thread(boost::bind(&SceneWorker::run, m_state));

    // Interruption of the thread that makes a scene must not leave it half made.
    const boost::this_thread::disable_interruption noInterruption;
    Lock lock(m_state->startMutex);
    while (!m_state->threadStarted)
    {
        m_state->startCondition.wait(lock);
    }
}

SceneWorker::~SceneWorker()
{
    stop();
    if (m_thread.joinable())
    {
        m_thread.detach(); // this is that thread; it ends after its turn
    }
}

void SceneWorker::stop()
{
    m_state->stopRequested = true;
    if (m_state->isInTurn())
    {
        m_state->stoppedInTurn = true;
    }
    if (m_state->workerThread == std::this_thread::get_id())
    {
        return;
    }
    const boost::this_thread::disable_interruption noInterruption;
    const std::lock_guard<std::mutex> lock(m_joinMutex);
    if (m_thread.joinable())
    {
        m_thread.interrupt();
        m_thread.join();
    }
}

void SceneWorker::setClock(core::system::IClockPtr clock)
{
    // What was set before ends with the argument, after the lock.
    const Lock lock(m_state->settingsMutex);
    m_state->clock.swap(clock);
}

core::system::IClockPtr SceneWorker::getClock() const
{
    return m_state->getSettings().first;
}

void SceneWorker::setEventManager(core::event::EventManagerPtr eventManager)
{
    const Lock lock(m_state->settingsMutex);
    m_state->eventManager.swap(eventManager);
}

void SceneWorker::lockScene()
{
    m_state->sceneMutex.lock();
}

void SceneWorker::unlockScene()
{
    m_state->sceneMutex.unlock();
}

void SceneWorker::addSceneController(const ISceneControllerPtr& controller)
{
    const bool readOnly = controller->isReadOnly();
    const LockUnlessHeld lock(m_state->controllersMutex, m_state->isInTurn());
    Controllers& controllers = m_state->controllers;
    controllers.insert(readOnly ? controllers.end() : controllers.begin(), controller);
}

void SceneWorker::removeSceneController(const ISceneControllerPtr& controller)
{
    const ISceneControllerPtr kept = controller; // released after the lock, if it is the last
    const LockUnlessHeld lock(m_state->controllersMutex, m_state->isInTurn());
    Controllers& controllers = m_state->controllers;
    const auto found = std::find(controllers.begin(), controllers.end(), kept);
    if (found != controllers.end())
    {
        controllers.erase(found);
    }
}

void SceneWorker::clearSceneControllers()
{
    Controllers released;
    const LockUnlessHeld lock(m_state->controllersMutex, m_state->isInTurn());
    m_state->controllers.swap(released);
}

void SceneWorker::holdForTurn(boost::shared_ptr<void> object)
{
    if (m_state->isInTurn())
    {
        m_state->heldForTurn = std::move(object);
    }
}

void SceneWorker::run(const std::shared_ptr<State>& state)
{
    {
        const Lock lock(state->startMutex);
        state->threadStarted = true;
        state->workerThread = std::this_thread::get_id();
    }
    state->startCondition.notify_one();
    while (!state->stopRequested)
    {
        try
        {
            if (state->updateControllers())
            {
                state->announceChange();
            }
        }
        catch (const std::bad_alloc&) // there may be memory in the next turn
        {
        }
        if (!state->stopRequested)
        {
            boost::this_thread::sleep(boost::posix_time::microsec_clock::universal_time() +
                                      TURN_PAUSE);
        }
    }
}
} // namespace velmoran::scene
