#include "core/system/IClock.h"
#include "scene/animation/AnimationManager.h"
#include "scene/manager/ISceneController.h"
#include "tests/scene/SceneUnderTest.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <future>
#include <mutex>
#include <thread>

namespace velmoran::scene
{
namespace
{
using boost::posix_time::ptime;
using boost::posix_time::time_duration;

/// Something that threads count up and others wait for.
class Counter
{
public:
    void add()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_value;
        m_changed.notify_all();
    }

    int value()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_value;
    }

    void waitFor(int value)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [&] { return m_value >= value; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_value = 0;
};

/// A controller made of a function; counts its updates.
class TestController : public ISceneController
{
public:
    using Update = std::function<bool(time_duration)>;

    explicit TestController(bool readOnly, Update update = {})
        : m_readOnly(readOnly), m_update(std::move(update))
    {
    }

    bool isReadOnly() override { return m_readOnly; }
    void attach(boost::shared_ptr<SceneManager> scene) override { attached = scene; }

    bool update(time_duration elapsed) override
    {
        const bool changed = m_update && m_update(elapsed);
        updates.add();
        return changed;
    }

    boost::weak_ptr<SceneManager> attached;
    Counter updates;

private:
    const bool m_readOnly;
    const Update m_update;
};

boost::shared_ptr<TestController> makeController(bool readOnly, TestController::Update update = {})
{
    return boost::make_shared<TestController>(readOnly, std::move(update));
}

SceneManagerPtr makeScene()
{
    return boost::make_shared<SceneManager>(boost::make_shared<core::event::EventManager>());
}
} // namespace

TEST(SceneWorker, UpdatesWritersNewestFirstAndReadersLast)
{
    const SceneManagerPtr scene = makeScene();
    std::vector<std::string> order;
    const auto noting = [&](const char* who)
    {
        return [&order, who](time_duration)
        {
            order.push_back(who);
            return false;
        };
    };
    const auto last = makeController(true, noting("late reader"));
    scene->lockScene();
    scene->addSceneController(makeController(true, noting("reader")));
    scene->addSceneController(makeController(false, noting("old writer")));
    scene->addSceneController(makeController(false, noting("new writer")));
    scene->addSceneController(ISceneControllerPtr());
    scene->addSceneController(last);
    scene->unlockScene();
    last->updates.waitFor(1);
    scene->stop();
    order.resize(4);
    EXPECT_THAT(order, ElementsAre("new writer", "old writer", "reader", "late reader"));
    EXPECT_EQ(last->attached.lock(), scene);
}

TEST(SceneWorker, RaisesOneSyncSceneForEachTurnThatChangedSomething)
{
    const SceneManagerPtr scene = makeScene();
    Counter syncs;
    core::event::EventBase listener(scene->getEventManager());
    listener.registerHandler("SyncScene", [&](const core::event::Event&) { syncs.add(); });
    std::atomic<int> changes{0};
    const auto change = [&](time_duration)
    {
        const bool changesNow = changes < 3;
        changes += changesNow ? 1 : 0;
        return changesNow;
    };
    const auto idle = makeController(true);
    scene->lockScene();
    scene->addSceneController(makeController(false, [&](time_duration) { return changes < 3; }));
    scene->addSceneController(idle);
    scene->addSceneController(makeController(true, change));
    scene->unlockScene();
    idle->updates.waitFor(6);
    scene->stop();
    EXPECT_EQ(syncs.value(), 3);
}

TEST(SceneWorker, MeasuresTimeWithTheClockThatIsSet)
{
    class StepClock : public core::system::IClock
    {
    public:
        ptime getTime() override
        {
            return ptime(boost::gregorian::date(2000, 1, 1)) +
                   boost::posix_time::seconds(++m_calls);
        }

    private:
        std::atomic<int> m_calls{0};
    };
    const SceneManagerPtr scene = makeScene();
    const auto clock = boost::make_shared<StepClock>();
    scene->setClock(core::system::IClockPtr());
    scene->setClock(clock);
    EXPECT_EQ(scene->getClock(), clock);
    std::atomic<bool> stepped{false};
    const auto controller =
        makeController(true,
                       [&](time_duration elapsed)
                       {
                           stepped = stepped || elapsed == boost::posix_time::seconds(1);
                           return false;
                       });
    scene->addSceneController(controller);
    controller->updates.waitFor(3);
    scene->stop();
    EXPECT_TRUE(stepped);
}

TEST(SceneWorker, StopsForGoodAndMoreThanOnce)
{
    const SceneManagerPtr scene = makeScene();
    const auto controller = makeController(true);
    scene->addSceneController(controller);
    controller->updates.waitFor(1);
    std::thread other([&] { scene->stop(); });
    scene->stop();
    other.join();
    const int updates = controller->updates.value();
    scene->stop();
    EXPECT_EQ(scene->getEventManager(), nullptr);
    EXPECT_EQ(controller->updates.value(), updates);
}

TEST(SceneWorker, StartsAndStopsAThousandTimes)
{
    for (int i = 0; i < 1000; ++i)
    {
        const SceneManagerPtr scene = makeScene();
        if (i % 2 == 0)
        {
            scene->stop();
        }
    }
}

TEST(SceneWorker, MayEndItsOwnScene)
{
    for (const auto& [inUpdate, drop] : {std::pair(true, false), std::pair(true, true),
                                         std::pair(false, false), std::pair(false, true)})
    {
        SCOPED_TRACE(std::string(drop ? "dropped" : "stopped") +
                     (inUpdate ? " in update" : " in a handler"));
        SceneManagerPtr scene = makeScene();
        const boost::weak_ptr<SceneManager> watch = scene;
        Counter ended;
        const auto end = [&scene, &ended, drop = drop]
        {
            if (drop)
            {
                scene.reset();
            }
            else
            {
                scene->stop();
            }
            ended.add();
        };
        std::atomic<int> updates{0};
        std::promise<void> go; // from then on only the worker holds the scene
        core::event::EventBase listener(scene->getEventManager());
        if (!inUpdate)
        {
            listener.registerHandler("SyncScene", [&](const core::event::Event&) { end(); });
        }
        scene->addSceneController(makeController(false,
                                                 [&, inUpdate = inUpdate](time_duration)
                                                 {
                                                     ++updates;
                                                     go.get_future().wait();
                                                     if (inUpdate)
                                                     {
                                                         end();
                                                     }
                                                     return true;
                                                 }));
        go.set_value();
        ended.waitFor(1);
        EXPECT_EQ(updates, 1);
        EXPECT_EQ(watch.expired(), drop);
    }
}

TEST(SceneWorker, LetsAControllerChangeTheListOfControllers)
{
    const SceneManagerPtr scene = makeScene();
    const auto added = makeController(true);
    boost::shared_ptr<TestController> adding;
    adding = makeController(false,
                            [&](time_duration)
                            {
                                scene->addSceneController(added);
                                scene->removeSceneController(adding);
                                return false;
                            });
    scene->addSceneController(adding);
    added->updates.waitFor(3);
    EXPECT_EQ(adding->updates.value(), 1);
    scene->stop();
    adding.reset();
}

TEST(SceneWorker, IsEditedFromOtherThreadsWhileItRuns)
{
    const SceneManagerPtr scene = makeScene();
    const core::event::EventManagerPtr events = scene->getEventManager();
    Counter syncs;
    core::event::EventBase listener(events);
    listener.registerHandler("SyncScene", [&](const core::event::Event&) { syncs.add(); });
    const auto writer = makeController(false,
                                       [&](time_duration)
                                       {
                                           scene->getRoot()->addTranslation(1, 0, 0);
                                           return true;
                                       });
    scene->addSceneController(writer);
    std::atomic<bool> stop{false};
    std::thread editing(
        [&]
        {
            while (!stop)
            {
                scene->lockScene();
                scene->getRoot()->addTranslation(-1, 0, 0);
                scene->setAnimationsLibrary({});
                scene->unlockScene();
            }
        });
    std::thread replacing(
        [&]
        {
            while (!stop)
            {
                const auto passing = makeController(true);
                scene->addSceneController(passing);
                scene->setEventManager(core::event::EventManagerPtr());
                scene->setClock(scene->getClock());
                scene->setEventManager(events);
                scene->removeSceneController(passing);
                const int updates = passing->updates.value();
                scene->removeSceneController(passing);
                EXPECT_EQ(passing->updates.value(), updates);
            }
        });
    writer->updates.waitFor(writer->updates.value() + 20);
    stop = true;
    editing.join();
    replacing.join();
    scene->stop();
    EXPECT_GT(syncs.value(), 0);
}

TEST(SceneWorker, AnimationsInstalledAgainReplaceTheirManager)
{
    const SceneManagerPtr scene = makeScene();
    EXPECT_EQ(scene->getAnimationManager(), nullptr);
    scene->setAnimationsLibrary({});
    const boost::weak_ptr<AnimationManager> first = scene->getAnimationManager();
    EXPECT_FALSE(first.expired());
    scene->lockScene();
    scene->setAnimationsLibrary({});
    EXPECT_NE(scene->getAnimationManager(), nullptr);
    EXPECT_TRUE(first.expired());
    scene->unlockScene();
}
} // namespace velmoran::scene
