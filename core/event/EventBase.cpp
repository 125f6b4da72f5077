#include "core/event/EventBase.h"

#include "core/event/Registry.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

namespace velmoran::core::event
{
/// What one object registered for, and its ties to the present event manager.
///
/// Outlives the object for as long as one of its handlers runs.
class EventBase::Registrations
{
public:
    EventManagerPtr getManager() const;

    /// Replaces the manager; returns when no handler reached through the one before
    /// runs on another thread.
    void setManager(EventBase& owner, const EventManagerPtr& manager);

    /// Registers for `type`, with a handler unless that is empty.
    void add(EventBase& owner, const EventType& type, const Handler& handler);

    void remove(const EventType& type);

    /// The handlers for `type`; empty when there are none.
    HandlersPtr find(const EventType& type) const;

    bool isOwnerGone() const { return m_ownerGone.load(); }
    void noteOwnerGone() { m_ownerGone.store(true); }

private:
    struct Registration
    {
        EventType type;
        HandlersPtr handlers;
        SubscriptionPtr subscription; ///< empty without manager
    };

    std::vector<Registration>::iterator locate(const EventType& type);
    void attach(EventBase& owner, Registration& registration);
    void detach(Registration& registration);
    void finishClosing();

    mutable std::mutex m_mutex;
    EventManagerPtr m_manager;
    std::vector<Registration> m_list;       ///< in the order of registration
    std::vector<SubscriptionPtr> m_closing; ///< detached, perhaps still delivering
    std::atomic<bool> m_ownerGone{false};
};

EventManagerPtr EventBase::Registrations::getManager() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_manager;
}

void EventBase::Registrations::setManager(EventBase& owner, const EventManagerPtr& manager)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_manager != manager)
        {
            std::for_each(m_list.begin(), m_list.end(), [this](Registration& r) { detach(r); });
            m_manager = manager;
            std::for_each(m_list.begin(), m_list.end(), [&](Registration& r) { attach(owner, r); });
        }
    }
    finishClosing();
}

void EventBase::Registrations::add(EventBase& owner, const EventType& type, const Handler& handler)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    auto registration = locate(type);
    if (registration == m_list.end())
    {
        registration = m_list.insert(m_list.end(), {type, std::make_shared<Handlers>(), nullptr});
        if (handler)
        {
            registration->handlers = std::make_shared<Handlers>(1, handler);
        }
        attach(owner, *registration);
    }
    else if (handler)
    {
        auto handlers = std::make_shared<Handlers>(*registration->handlers);
        handlers->push_back(handler);
        registration->handlers = std::move(handlers);
        if (m_manager)
        {
            m_manager->m_registry->replaceHandlers(type, registration->subscription,
                                                   registration->handlers);
        }
    }
}

void EventBase::Registrations::remove(const EventType& type)
{
    HandlersPtr released; // what handlers hold may well end here: not under the lock
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto registration = locate(type);
        if (registration != m_list.end())
        {
            detach(*registration);
            released = std::move(registration->handlers);
            m_list.erase(registration);
        }
    }
    finishClosing();
}

HandlersPtr EventBase::Registrations::find(const EventType& type) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const Registration& registration : m_list)
    {
        if (registration.type == type)
        {
            return registration.handlers;
        }
    }
    return nullptr;
}

std::vector<EventBase::Registrations::Registration>::iterator
EventBase::Registrations::locate(const EventType& type)
{
    return std::find_if(m_list.begin(), m_list.end(),
                        [&](const Registration& registration)
                        { return registration.type == type; });
}

void EventBase::Registrations::attach(EventBase& owner, Registration& registration)
{
    if (m_manager)
    {
        registration.subscription = std::make_shared<Subscription>(owner);
        m_manager->m_registry->add(registration.type, registration.subscription,
                                   registration.handlers);
    }
}

void EventBase::Registrations::detach(Registration& registration)
{
    if (registration.subscription)
    {
        m_manager->m_registry->remove(registration.type, registration.subscription);
        m_closing.push_back(std::move(registration.subscription));
        registration.subscription.reset();
    }
}

void EventBase::Registrations::finishClosing()
{
    // Also those that another thread is closing right now: whoever returns from
    // here was promised that no handler runs any more.
    std::vector<SubscriptionPtr> closing;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        closing = m_closing;
    }
    for (const SubscriptionPtr& subscription : closing)
    {
        subscription->close();
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closing.erase(std::remove_if(m_closing.begin(), m_closing.end(),
                                   [&](const SubscriptionPtr& subscription) {
                                       return std::find(closing.begin(), closing.end(),
                                                        subscription) != closing.end();
                                   }),
                    m_closing.end());
}

EventBase::EventBase(const EventManagerPtr& eventManager)
    : m_registrations(std::make_shared<Registrations>())
{
    m_registrations->setManager(*this, eventManager);
}

void EventBase::handleEvent(Event event)
{
    // In a dispatch the handlers are those of the moment when it began.
    const std::shared_ptr<Registrations> registrations = m_registrations;
    const Subscription::Delivery* const delivery = Subscription::current();
    const bool dispatched = delivery != nullptr && delivery->subscription->isOwnedBy(*this) &&
                            !delivery->subscription->isClosed() &&
                            *delivery->type == event.getEventType();
    const HandlersPtr handlers =
        dispatched ? *delivery->handlers : registrations->find(event.getEventType());
    if (!handlers)
    {
        return;
    }
    for (const Handler& handler : *handlers)
    {
        handler(event);
        // From here on this object may be gone.
        if (registrations->isOwnerGone() || (dispatched && delivery->subscription->isClosed()))
        {
            return;
        }
    }
}

EventBase::~EventBase()
{
    m_registrations->setManager(*this, EventManagerPtr());
    m_registrations->noteOwnerGone();
}

EventManagerPtr EventBase::getEventManager()
{
    return m_registrations->getManager();
}

void EventBase::setEventManager(boost::shared_ptr<EventManager> eventManager)
{
    m_registrations->setManager(*this, eventManager);
}

void EventBase::registerToListen(EventType type)
{
    m_registrations->add(*this, type, Handler());
}

void EventBase::registerHandler(EventType type, boost::function<void(Event)> handler)
{
    if (handler)
    {
        m_registrations->add(*this, type, handler);
    }
}

void EventBase::triggerEvent(Event event)
{
    const EventManagerPtr manager = m_registrations->getManager();
    if (manager)
    {
        manager->triggerEvent(std::move(event));
    }
}

void EventBase::triggerEvent(std::string type, std::string data)
{
    const EventManagerPtr manager = m_registrations->getManager();
    if (manager)
    {
        manager->triggerEvent(std::move(type), std::move(data));
    }
}

void EventBase::unregister(const EventType& type)
{
    m_registrations->remove(type);
}
} // namespace velmoran::core::event
