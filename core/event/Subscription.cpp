#include "core/event/Subscription.h"

namespace velmoran::core::event
{
namespace
{
// Found without a call, at each delivery: it has its place from when the program starts, or
// in what the loader keeps free for libraries that come later.
[[gnu::tls_model("initial-exec")]] thread_local Subscription::Delivery* t_innermost = nullptr;
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

Subscription::Subscription(EventBase& owner, const std::shared_ptr<Gate>& gate)
    : m_owner(owner), m_gate(gate)
{
}

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
}

bool Subscription::isClosed() const
{
    return (m_state.load() & CLOSED) != 0;
}

bool Subscription::isIdle() const
{
    return countRunning() == 0;
}

void Subscription::wait(Gate& gate, const std::vector<SubscriptionPtr>& subscriptions,
                        Waiting waiting)
{
    // Excused on all of them before waiting for any: another thread may wait for them
    // in another order.
    std::vector<std::uint32_t> own;
    std::unique_lock<std::mutex> lock(gate.mutex);
    for (const SubscriptionPtr& subscription : subscriptions)
    {
        own.push_back(subscription->countOwnDeliveries());
        subscription->m_excused += own.back();
    }
    gate.left.notify_all();
    gate.left.wait(lock,
                   [&]
                   {
                       for (std::size_t i = 0; i < subscriptions.size(); ++i)
                       {
                           const bool all = waiting == Waiting::FOR_ALL_OTHER_THREADS;
                           if (subscriptions[i]->countRunning() >
                               (all ? own[i] : subscriptions[i]->m_excused))
                           {
                               return false;
                           }
                       }
                       return true;
                   });
    for (std::size_t i = 0; i < subscriptions.size(); ++i)
    {
        subscriptions[i]->m_excused -= own[i];
    }
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
        // Nobody can miss the change between looking at the count and waiting.
        const std::lock_guard<std::mutex> lock(m_gate->mutex);
        m_gate->left.notify_all();
    }
}
} // namespace velmoran::core::event
