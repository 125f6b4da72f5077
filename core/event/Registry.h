#pragma once

#include "core/event/EventManager.h"
#include "core/event/Subscription.h"

#include <boost/intrusive_ptr.hpp>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace velmoran::core::event
{
/// Who listens to which type of event, in the order of subscription.
///
/// The lock is held for look-ups and edits only, never while a handler runs: a
/// dispatch reads a list that nobody changes as long as a dispatch reads it.
class EventManager::Registry
{
public:
    /// Whether some type with this hash may have listeners. Takes no lock.
    bool mayHaveListeners(std::size_t typeHash) const;
    bool hasListeners(const EventType& type) const;

    void dispatch(const Event& event);

    /// Appends a subscription to those of `type`.
    void add(const EventType& type, const SubscriptionPtr& subscription,
             const HandlersPtr& handlers);

    /// Gives a present subscription another list of handlers.
    void replaceHandlers(const EventType& type, const SubscriptionPtr& subscription,
                         HandlersPtr handlers);

    void remove(const EventType& type, const SubscriptionPtr& subscription);

private:
    struct Listener
    {
        SubscriptionPtr subscription;
        HandlersPtr handlers;
    };

    /// The listeners of one type. Changed in place while no dispatch reads it, else
    /// replaced by a changed copy.
    struct Listeners
    {
        std::vector<Listener> list;
        std::atomic<int> holders{0}; ///< the registry and every dispatch that reads it

        friend void intrusive_ptr_add_ref(Listeners* listeners)
        {
            listeners->holders.fetch_add(1, std::memory_order_relaxed);
        }
        friend void intrusive_ptr_release(Listeners* listeners)
        {
            if (listeners->holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
            {
                delete listeners;
            }
        }
    };
    using ListenersPtr = boost::intrusive_ptr<Listeners>;

    struct HashOfType
    {
        std::size_t operator()(const EventType& type) const { return type.getHash(); }
    };

    static std::size_t slotOf(std::size_t typeHash);
    static std::vector<Listener>& editable(ListenersPtr& listeners);

    mutable std::mutex m_mutex;
    std::unordered_map<EventType, ListenersPtr, HashOfType> m_listeners; ///< no empty lists
    std::array<std::atomic<std::uint32_t>, 256> m_typesInSlot{};         ///< by hash
};
} // namespace velmoran::core::event
