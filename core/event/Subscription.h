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
using Handlers = std::vector<EventBase::Handler>;
using HandlersPtr = std::shared_ptr<const Handlers>;

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

    explicit Subscription(EventBase& owner);

    /// Calls the owner's `handleEvent` unless the subscription is closed.
    void deliver(const Event& event, const HandlersPtr& handlers);

    /// Lets no further delivery begin and waits for those that run on other threads.
    /// A delivery whose own thread waits here too is not waited for: two handlers of
    /// one object that both detach it would wait for each other.
    void close();

    bool isClosed() const;
    bool isOwnedBy(const EventBase& owner) const;

    /// The innermost delivery of this thread; null when there is none.
    static const Delivery* current();

private:
    class Running;

    static constexpr std::uint32_t CLOSED = 0x80000000U;

    std::uint32_t countRunning() const;
    std::uint32_t countOwnDeliveries() const;
    void leave();

    EventBase& m_owner;                    ///< alive while open or a delivery runs
    std::atomic<std::uint32_t> m_state{0}; ///< CLOSED flag and number of deliveries
    std::mutex m_mutex;                    ///< guards the following, and waiting
    std::condition_variable m_left;
    std::uint32_t m_closingDeliveries = 0; ///< deliveries whose thread is in close()
};

using SubscriptionPtr = std::shared_ptr<Subscription>;
} // namespace velmoran::core::event
