#include "core/event/Subscription.h"

namespace velmoran::core::event
{
namespace
{
thread_local Subscription::Delivery* t_innermost = nullptr;
} // namespace

/// Keeps a delivery on this thread's stack for as long as it lives.
class Subscription::Running
{
public:
    Running(Subscription& subscription, const Event& event, const HandlersPtr& handlers)
        : m_delivery{&subscription, &event.getEventType(), &handlers, t_innermost}
    {
        t_innermost = &m_delivery;
    }

    ~Running()
    {
        t_innermost = m_delivery.outer;
        m_delivery.subscription->leave();
    }

    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    Delivery m_delivery;
};

Subscription::Subscription(EventBase& owner) : m_owner(owner) {}

void Subscription::deliver(const Event& event, const HandlersPtr& handlers)
{
    if ((m_state.fetch_add(1) & CLOSED) != 0)
    {
        leave();
        return;
    }
    const Running running(*this, event, handlers);
    m_owner.handleEvent(event);
}

void Subscription::close()
{
    m_state.fetch_or(CLOSED);
    const std::uint32_t own = countOwnDeliveries();
    std::unique_lock<std::mutex> lock(m_mutex);
    m_closingDeliveries += own;
    m_left.notify_all();
    m_left.wait(lock, [this] { return countRunning() <= m_closingDeliveries; });
    m_closingDeliveries -= own;
}

bool Subscription::isClosed() const
{
    return (m_state.load() & CLOSED) != 0;
}

bool Subscription::isOwnedBy(const EventBase& owner) const
{
    return &m_owner == &owner;
}

const Subscription::Delivery* Subscription::current()
{
    return t_innermost;
}

std::uint32_t Subscription::countRunning() const
{
    return m_state.load() & ~CLOSED;
}

std::uint32_t Subscription::countOwnDeliveries() const
{
    std::uint32_t own = 0;
    for (const Delivery* delivery = t_innermost; delivery != nullptr; delivery = delivery->outer)
    {
        own += delivery->subscription == this ? 1U : 0U;
    }
    return own;
}

void Subscription::leave()
{
    if ((m_state.fetch_sub(1) & CLOSED) != 0)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_left.notify_all();
    }
}
} // namespace velmoran::core::event
