#pragma once

#include "core/Forward.h"
#include "core/event/Event.h"

#include <boost/function.hpp>

#include <memory>
#include <string>

namespace velmoran::core::event
{
/// Base of every object that raises or hears events.
///
/// Registrations belong to the object: they are kept when the event manager is
/// replaced, taken away or set later. An object hears an event once, however
/// often it registered for the event's type.
///
/// | operation                   | without event manager | with event manager           |
/// |-----------------------------|-----------------------|------------------------------|
/// | triggerEvent                | dropped               | dispatched at once           |
/// | registerHandler, -ToListen  | kept for later        | heard from the next event on |
/// | setEventManager(empty)      | nothing               | detached                     |
/// | setEventManager(the same)   | (n/a)                 | nothing                      |
/// | setEventManager(another)    | attached              | detached, then attached      |
///
/// Handlers run on the thread that raises the event, so several may run at once. What a
///     handler throws goes to whoever raised the event, and later listeners miss it.
///     What a handler holds is released when the last dispatch that reached it ends; a
///     handler that holds its own object keeps it for ever.
/// Detaching: once `setEventManager` or the destructor has returned, no handler of
///     this object is called again, from any thread. They wait for handlers that
///     run on other threads, never for one that runs on the calling thread, nor for
///     one that waits for the same (but a destructor waits for that one, too).
///     Detaching while holding a lock that a running handler wants therefore
///     cannot work, nor can handlers of two objects that detach each other's.
///     A class that registers handlers or overrides `handleEvent` calls
///     `detachForGood` first in its own destructor, before what its handlers use goes.
///     One that registers in its constructor may be called before that has ended.
/// Threads: every operation may be called from any thread.
class VELMORAN_CORE_EXPORT EventBase
{
public:
    /// What is called with an event of a type.
    using Handler = boost::function<void(Event)>;

    /// Starts attached to `eventManager`, which may be empty.
    explicit EventBase(const EventManagerPtr& eventManager);

    EventBase(const EventBase&) = delete;
    EventBase& operator=(const EventBase&) = delete;

    /// Called with every event that this object subscribed to: calls the handlers
    /// registered for the event's type in the order of their registration. Stops when
    /// this object was destroyed meanwhile, or detached from where the event came from.
    virtual void handleEvent(Event event);

    virtual ~EventBase();

    /// The event manager; empty when none is set.
    virtual EventManagerPtr getEventManager();

    /// Replaces the event manager; an empty handle detaches. See above.
    virtual void setEventManager(boost::shared_ptr<EventManager> eventManager);

    /// Subscribes this object, so that `handleEvent` is called with such events.
    virtual void registerToListen(EventType type);

    /// Subscribes this object and lets `handleEvent` call `handler`. Ignored when
    /// `handler` is empty.
    virtual void registerHandler(EventType type, boost::function<void(Event)> handler);

    /// Raises `event` on the event manager.
    virtual void triggerEvent(Event event);

    /// Raises an event of the named type with an empty source.
    virtual void triggerEvent(std::string type, std::string data);

    /// Takes back every registration for `type`, also those that a base class made;
    /// nothing when there is none. Waits like detaching does: afterwards no such
    /// handler is called again.
    void unregister(const EventType& type);

protected:
    /// Detaches an object that is being destroyed.
    void detachForGood();

private:
    class Registrations;

    const std::shared_ptr<Registrations> m_registrations; ///< outlives a running handler
};
} // namespace velmoran::core::event
