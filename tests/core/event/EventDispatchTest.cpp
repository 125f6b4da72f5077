#include "core/event/EventBase.h"
#include "core/event/EventManager.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace velmoran::core::event
{
namespace
{
using testing::ElementsAre;

/// Calls a function with every event of the types that it registered for.
class Listener : public EventBase
{
public:
    explicit Listener(const EventManagerPtr& manager) : EventBase(manager) {}
    ~Listener() override { detachForGood(); }

    void on(const EventType& type, const std::function<void(const Event&)>& function)
    {
        registerHandler(type, [function](const Event& event) { function(event); });
    }
};

class EventDispatch : public testing::Test
{
protected:
    std::function<void(const Event&)> note(const std::string& who)
    {
        return [this, who](const Event& event)
        { heard.push_back(who + ":" + event.getEventData().getData()); };
    }

    EventManagerPtr manager = boost::make_shared<EventManager>();
    std::vector<std::string> heard;
};
} // namespace

TEST_F(EventDispatch, ReachesObjectsInOrderOfSubscriptionAndEachOnce)
{
    Listener a(manager);
    Listener b(manager);
    b.on("ping", note("b1"));
    a.on("ping", note("a"));
    b.on("ping", note("b2"));
    b.registerToListen("ping");
    b.setEventManager(manager);
    manager->triggerEvent("ping", "1");
    a.triggerEvent(Event("ping", "2", "a"));
    a.triggerEvent("pong", "3");
    EXPECT_THAT(heard, ElementsAre("b1:1", "b2:1", "a:1", "b1:2", "b2:2", "a:2"));
}

TEST_F(EventDispatch, CallsHandleEventOfWhoOnlyListens)
{
    struct Recorder : Listener
    {
        using Listener::Listener;
        void handleEvent(Event event) override
        {
            seen.push_back(event.getEventType().getName() + event.getSource());
        }
        std::vector<std::string> seen;
    };
    Recorder recorder(manager);
    recorder.registerToListen("ping");
    recorder.registerToListen("ping");
    manager->triggerEvent(Event("ping", "", "!"));
    EXPECT_THAT(recorder.seen, ElementsAre("ping!"));
    recorder.unregister("ping");
    manager->triggerEvent("ping", "");
    EXPECT_EQ(recorder.seen.size(), 1U);
    EXPECT_FALSE(manager->hasListeners("ping"));
}

TEST_F(EventDispatch, KeepsRegistrationsAcrossManagers)
{
    Listener listener{EventManagerPtr()};
    listener.on("ping", note("x"));
    listener.triggerEvent("ping", "dropped");
    listener.setEventManager(manager);
    EXPECT_TRUE(manager->hasListeners("ping"));
    manager->triggerEvent("ping", "1");

    const auto other = boost::make_shared<EventManager>();
    listener.setEventManager(other);
    manager->triggerEvent("ping", "old");
    other->triggerEvent("ping", "2");
    listener.setEventManager(EventManagerPtr());
    other->triggerEvent("ping", "none");
    EXPECT_THAT(heard, ElementsAre("x:1", "x:2"));
}

TEST_F(EventDispatch, LetsHandlersRegisterDetachAndRaise)
{
    Listener a(manager);
    Listener b(manager);
    Listener late(manager);
    a.on("ping",
         [&](const Event& event)
         {
             note("a")(event);
             if (event.getEventData().getData() == "1")
             {
                 late.on("ping", note("late"));
                 b.setEventManager(EventManagerPtr());
                 a.triggerEvent("ping", "nested");
             }
         });
    b.on("ping", note("b"));
    manager->triggerEvent("ping", "1");
    EXPECT_THAT(heard, ElementsAre("a:1", "a:nested", "late:nested"));
}

TEST_F(EventDispatch, StopsAnObjectThatDetachesOrDestroysItself)
{
    Listener detaching(manager);
    detaching.on("ping", [&](const Event&) { detaching.setEventManager(EventManagerPtr()); });
    detaching.on("ping", note("never"));

    auto dying = boost::make_shared<Listener>(manager);
    const boost::weak_ptr<Listener> watch = dying;
    dying->on("ping", [&](const Event&) { dying.reset(); });
    dying->on("ping", note("never"));
    Listener last(manager);
    last.on("ping", note("last"));

    manager->triggerEvent("ping", "1");
    EXPECT_TRUE(watch.expired());
    EXPECT_THAT(heard, ElementsAre("last:1"));

    Listener direct{EventManagerPtr()};
    direct.on("ping", note("direct"));
    direct.handleEvent(Event("ping", "2", ""));
    EXPECT_EQ(heard.back(), "direct:2");
}

TEST_F(EventDispatch, DestructionWaitsForAHandlerOnAnotherThread)
{
    for (const bool detachesItself : {false, true})
    {
        SCOPED_TRACE(detachesItself ? "that detached itself" : "");
        std::promise<void> entered;
        std::promise<void> release;
        std::atomic<bool> finished{false};
        auto listener = std::make_unique<Listener>(manager);
        Listener* const object = listener.get();
        listener->on("ping",
                     [&](const Event&)
                     {
                         if (detachesItself)
                         {
                             object->unregister("ping");
                             object->setEventManager(EventManagerPtr());
                         }
                         entered.set_value();
                         release.get_future().wait();
                         finished = true;
                     });
        std::thread raising([&] { manager->triggerEvent("ping", ""); });
        entered.get_future().wait();
        std::thread releasing([&] { release.set_value(); });
        listener.reset();
        EXPECT_TRUE(finished);
        raising.join();
        releasing.join();
    }
}

TEST_F(EventDispatch, TwoHandlersMayDetachTheirObjectAtTheSameTime)
{
    // By one type and by two: each waits for none that waits itself.
    for (const char* const second : {"ping", "pong"})
    {
        Listener listener(manager);
        std::atomic<int> inside{0};
        const auto detach = [&](const Event&)
        {
            ++inside;
            while (inside < 2)
            {
                std::this_thread::yield();
            }
            listener.setEventManager(EventManagerPtr());
        };
        listener.on("ping", detach);
        listener.on("pong", detach);
        std::thread other([&] { manager->triggerEvent(second, ""); });
        manager->triggerEvent("ping", "");
        other.join();
        EXPECT_EQ(inside, 2);
    }
}

TEST_F(EventDispatch, AnOverridingManagerHearsWhatNobodyListensTo)
{
    struct Recording : EventManager
    {
        using EventManager::triggerEvent;
        void triggerEvent(Event event) override { last = event.getEventData().getData(); }
        std::string last;
    };
    const auto recording = boost::make_shared<Recording>();
    Listener listener(recording);
    listener.triggerEvent("ping", "1");
    EXPECT_EQ(recording->last, "1");
}

TEST_F(EventDispatch, NobodyIsCalledAfterItsDestructionWhileThreadsRaise)
{
    struct Target
    {
        explicit Target(const EventManagerPtr& m) : listener(m)
        {
            listener.on("ping", [this](const Event&) { ASSERT_TRUE(alive); });
        }
        ~Target()
        {
            listener.setEventManager(EventManagerPtr());
            alive = false;
        }
        bool alive = true;
        Listener listener;
    };
    std::atomic<bool> stop{false};
    std::vector<std::thread> raising;
    for (int i = 0; i < 2; ++i)
    {
        raising.emplace_back(
            [&]
            {
                while (!stop)
                {
                    manager->triggerEvent("ping", "");
                }
            });
    }
    for (int i = 0; i < 2000; ++i)
    {
        Target first(manager);
        Target second(manager);
        second.listener.registerHandler("pong", [](const Event&) {});
    }
    stop = true;
    for (std::thread& thread : raising)
    {
        thread.join();
    }
}

TEST_F(EventDispatch, ReleasesWhatAHandlerHolds)
{
    const auto held = std::make_shared<int>(0);
    Listener listener(manager);
    listener.registerHandler("ping", [held](const Event&) {});
    EXPECT_GT(held.use_count(), 1);
    listener.unregister("ping");
    EXPECT_EQ(held.use_count(), 1);
}
} // namespace velmoran::core::event
