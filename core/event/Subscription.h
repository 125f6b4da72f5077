#pragma once

#include "core/event/EventBase.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace velmoran::core::event
{
/// The handlers of one object for one type, in the order of their registration.
/// Never changed once shared: another registration makes another list.
using Handlers = std::vector<std::shared_ptr<const EventBase::Handler>>;
using HandlersPtr = std::shared_ptr<const Handlers>;

/// Where threads wait for the deliveries to one object. Shared by the object's
/// subscriptions, so it outlives the object.
struct Gate
{
    std::mutex mutex; ///< guards `excused` of the subscriptions, and waiting
    std::condition_variable left;
};

/// What ties one object to one type of event on one event manager.
///
/// Shared by the object and by every dispatch that may still deliver to it, so it
/// outlives the object. Open from the start; once closed it stays so.
class Subscription
{
public:
    /// A delivery that runs on this thread. Deliveries of a thread form a stack.
    struct Delivery
    {
        Subscription* subscription;
        const EventType* type;
        const HandlersPtr* handlers;
        Delivery* outer;
    };

    /// Whose deliveries to an object are not waited for: the thread's own, and, unless
    /// the object is being destroyed, those of threads that wait here themselves. Two
    /// handlers that both detach their object would wait for each other.
    enum class Waiting
    {
        FOR_HANDLERS,
        FOR_ALL_OTHER_THREADS
    };

    Subscription(EventBase& owner, const std::shared_ptr<Gate>& gate);

    /// Calls the owner's `handleEvent` unless the subscription is closed.
    void deliver(const Event& event, const HandlersPtr& handlers);

    /// Lets no further delivery begin.
    void close();

    bool isClosed() const;

    /// Whether no delivery runs.
    bool isIdle() const;
    bool isOwnedBy(const EventBase& owner) const;

    /// Waits for the deliveries of closed subscriptions of one object.
    static void wait(Gate& gate, const std::vector<std::shared_ptr<Subscription>>& subscriptions,
                     Waiting waiting);

    /// The innermost delivery of this thread; null when there is none.
    static const Delivery* current();

private:
    class Running;

    static constexpr std::uint32_t CLOSED = 0x80000000U;

    std::uint32_t countRunning() const;
    std::uint32_t countOwnDeliveries() const;
    void leave();

    EventBase& m_owner; ///< not touched once closed, except by deliveries that run
    const std::shared_ptr<Gate> m_gate;
    std::atomic<std::uint32_t> m_state{0}; ///< CLOSED flag and number of deliveries
    std::uint32_t m_excused = 0;           ///< deliveries whose thread is in wait()
};

using SubscriptionPtr = std::shared_ptr<Subscription>;
} // namespace velmoran::core::event
