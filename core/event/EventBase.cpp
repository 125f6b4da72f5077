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
/// Outlives the object for as long as one of its handlers runs. Nothing of the user's
/// is copied, called or released under its lock.
class EventBase::Registrations
{
public:
    EventManagerPtr getManager() const;

    /// Replaces the manager, then waits for the handlers reached through the one before.
    void setManager(EventBase& owner, EventManagerPtr manager, Subscription::Waiting waiting);

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
    void waitForClosed(Subscription::Waiting waiting);

    const std::shared_ptr<Gate> m_gate = std::make_shared<Gate>();
    mutable std::mutex m_mutex;
    EventManagerPtr m_manager;
    std::vector<Registration> m_list;      ///< in the order of registration
    std::vector<SubscriptionPtr> m_closed; ///< perhaps still delivering
    std::atomic<bool> m_ownerGone{false};
};

EventManagerPtr EventBase::Registrations::getManager() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_manager;
}

void EventBase::Registrations::setManager(EventBase& owner, EventManagerPtr manager,
                                          Subscription::Waiting waiting)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_manager != manager)
        {
            std::for_each(m_list.begin(), m_list.end(), [this](Registration& r) { detach(r); });
            m_manager.swap(manager);
            std::for_each(m_list.begin(), m_list.end(), [&](Registration& r) { attach(owner, r); });
        }
    }
    waitForClosed(waiting);
}

void EventBase::Registrations::add(EventBase& owner, const EventType& type, const Handler& handler)
{
    const auto entry = handler ? std::make_shared<const Handler>(handler) : nullptr;
    HandlersPtr released;
    const std::lock_guard<std::mutex> lock(m_mutex);
    auto registration = locate(type);
    const bool isNew = registration == m_list.end();
    if (isNew)
    {
        registration = m_list.insert(m_list.end(), {type, std::make_shared<Handlers>(), nullptr});
    }
    if (entry)
    {
        auto handlers = std::make_shared<Handlers>(*registration->handlers);
        handlers->push_back(entry);
        released = std::exchange(registration->handlers, std::move(handlers));
    }
    if (isNew)
    {
        attach(owner, *registration);
    }
    else if (entry && m_manager)
    {
        m_manager->m_registry->replaceHandlers(type, registration->subscription,
                                               registration->handlers);
    }
}

void EventBase::Registrations::remove(const EventType& type)
{
    HandlersPtr released;
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
    waitForClosed(Subscription::Waiting::FOR_HANDLERS);
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
        registration.subscription = std::make_shared<Subscription>(owner, m_gate);
        m_manager->m_registry->add(registration.type, registration.subscription,
                                   registration.handlers);
    }
}

void EventBase::Registrations::detach(Registration& registration)
{
    if (registration.subscription)
    {
        m_manager->m_registry->remove(registration.type, registration.subscription);
        registration.subscription->close();
        m_closed.push_back(std::move(registration.subscription));
        registration.subscription.reset();
    }
}

void EventBase::Registrations::waitForClosed(Subscription::Waiting waiting)
{
    // Also for what was closed before and still delivers: whoever returns from here was
    // promised that no handler runs any more.
    std::vector<SubscriptionPtr> closed;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed.erase(std::remove_if(m_closed.begin(), m_closed.end(),
                                      [](const SubscriptionPtr& s) { return s->isIdle(); }),
                       m_closed.end());
        closed = m_closed;
    }
    if (!closed.empty())
    {
        Subscription::wait(*m_gate, closed, waiting);
    }
}

namespace
{
/// Calls the handlers in order for as long as the object is not gone or detached. The
/// last one takes the event over.
template <typename IsOver>
void callHandlers(const Handlers& handlers, Event& event, IsOver isOver)
{
    std::size_t i = 0;
    for (; i + 1 < handlers.size() && !isOver(); ++i)
    {
        (*handlers[i])(event);
    }
    if (i + 1 == handlers.size() && !isOver())
    {
        (*handlers[i])(std::move(event));
    }
}
} // namespace

EventBase::EventBase(const EventManagerPtr& eventManager)
    : m_registrations(std::make_shared<Registrations>())
{
    m_registrations->setManager(*this, eventManager, Subscription::Waiting::FOR_HANDLERS);
}

void EventBase::handleEvent(Event event)
{
    const Subscription::Delivery* const delivery = Subscription::current();
    const bool dispatched = delivery != nullptr && delivery->subscription->isOwnedBy(*this) &&
                            *delivery->type == event.getEventType();
    if (dispatched)
    {
        // The handlers are those of the moment when the dispatch began. An object that
        // goes closes its subscriptions first.
        const Subscription& subscription = *delivery->subscription;
        callHandlers(**delivery->handlers, event, [&] { return subscription.isClosed(); });
        return;
    }
    const std::shared_ptr<Registrations> registrations = m_registrations;
    const HandlersPtr handlers = registrations->find(event.getEventType());
    if (handlers)
    {
        callHandlers(*handlers, event, [&] { return registrations->isOwnerGone(); });
    }
}

EventBase::~EventBase()
{
    detachForGood();
    m_registrations->noteOwnerGone();
}

EventManagerPtr EventBase::getEventManager()
{
    return m_registrations->getManager();
}

void EventBase::setEventManager(boost::shared_ptr<EventManager> eventManager)
{
    m_registrations->setManager(*this, std::move(eventManager),
                                Subscription::Waiting::FOR_HANDLERS);
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

void EventBase::detachForGood()
{
    m_registrations->setManager(*this, EventManagerPtr(),
                                Subscription::Waiting::FOR_ALL_OTHER_THREADS);
}
} // namespace velmoran::core::event
