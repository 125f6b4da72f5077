#pragma once

#include "core/event/Event.h"

#include <memory>
#include <string>

namespace velmoran::core::event
{
/// Dispatches events by the name of their type to the objects that subscribed.
///
/// An event is dispatched at once, on the thread that raises it, to the objects
/// that were subscribed to its type at that moment, in the order in which they
/// subscribed. An object that subscribes during a dispatch first hears the next
/// event; one that detaches during a dispatch is not called any more.
///
/// No lock is held while a handler runs: a handler may raise events, subscribe,
/// detach its own or another object, or drop the last handle of its object.
///
/// A class that records or forwards events overrides `triggerEvent(Event)`. It is given
/// every event, heard or not, unless it overrides `hasListeners`, too, which tells whether
/// an event is raised at all.
///
/// Ownership: shared by everyone who uses it; it holds no subscribed object.
/// Threads: every operation may be called from any thread.
class VELMORAN_CORE_EXPORT EventManager
{
public:
    EventManager();
    virtual ~EventManager();

    EventManager(const EventManager&) = delete;
    EventManager& operator=(const EventManager&) = delete;

    /// Raises an event of the named type with an empty source.
    /// Costs a look at a table when nobody listens.
    void triggerEvent(std::string type, std::string data);

    /// Raises `event`. Costs a look at a table when nobody listens.
    virtual void triggerEvent(Event event);

    /// Whether an event of this type would reach anybody now; a derived class counts as
    /// somebody. Ask before building the text of an event. Cheap where nobody listens.
    virtual bool hasListeners(const EventType& type) const;

private:
    friend class EventBase;
    class Registry;

    bool isDerived() const;

    const std::unique_ptr<Registry> m_registry;
};
} // namespace velmoran::core::event
