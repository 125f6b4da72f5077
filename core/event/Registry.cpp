#include "core/event/Registry.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velmoran::core::event
{
bool EventManager::Registry::mayHaveListeners(std::size_t typeHash) const
{
    return m_typesInSlot[slotOf(typeHash)].load(std::memory_order_acquire) != 0;
}

bool EventManager::Registry::hasListeners(const EventType& type) const
{
    if (!mayHaveListeners(type.getHash()))
    {
        return false;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_listeners.find(type) != m_listeners.end();
}

void EventManager::Registry::dispatch(const Event& event)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto found = m_listeners.find(event.getEventType());
    if (found == m_listeners.end())
    {
        return;
    }
    const ListenersPtr listeners = found->second;
    lock.unlock();
    for (const Listener& listener : listeners->list)
    {
        listener.subscription->deliver(event, listener.handlers);
    }
}

void EventManager::Registry::add(const EventType& type, const SubscriptionPtr& subscription,
                                 const HandlersPtr& handlers)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_listeners.find(type);
    if (found != m_listeners.end())
    {
        editable(found->second).push_back({subscription, handlers});
        return;
    }
    const ListenersPtr listeners(new Listeners());
    listeners->list.push_back({subscription, handlers});
    m_listeners.emplace(type, listeners);
    m_typesInSlot[slotOf(type.getHash())].fetch_add(1);
}

void EventManager::Registry::replaceHandlers(const EventType& type,
                                             const SubscriptionPtr& subscription,
                                             HandlersPtr handlers)
{
    // The old list ends with the argument, after the lock is released: handlers may
    // hold anything.
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_listeners.find(type);
    if (found == m_listeners.end())
    {
        return;
    }
    for (Listener& listener : editable(found->second))
    {
        if (listener.subscription == subscription)
        {
            listener.handlers.swap(handlers);
            break;
        }
    }
}

void EventManager::Registry::remove(const EventType& type, const SubscriptionPtr& subscription)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_listeners.find(type);
    if (found == m_listeners.end())
    {
        return;
    }
    std::vector<Listener>& list = editable(found->second);
    // From the back: what came last mostly goes first.
    const auto listener =
        std::find_if(list.rbegin(), list.rend(),
                     [&](const Listener& entry) { return entry.subscription == subscription; });
    if (listener != list.rend())
    {
        list.erase(std::next(listener).base());
    }
    if (list.empty())
    {
        m_listeners.erase(found);
        m_typesInSlot[slotOf(type.getHash())].fetch_sub(1);
    }
}

std::size_t EventManager::Registry::slotOf(std::size_t typeHash)
{
    return typeHash % 256;
}

std::vector<EventManager::Registry::Listener>&
EventManager::Registry::editable(ListenersPtr& listeners)
{
    if (listeners->holders.load(std::memory_order_acquire) != 1)
    {
        const ListenersPtr copy(new Listeners());
        copy->list = listeners->list;
        listeners = copy;
    }
    return listeners->list;
}
} // namespace velmoran::core::event
