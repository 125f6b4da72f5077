#include "core/event/EventManager.h"

#include "core/event/Registry.h"

#include <functional>
#include <typeinfo>
#include <utility>

namespace velmoran::core::event
{
EventManager::EventManager() : m_registry(std::make_unique<Registry>()) {}

EventManager::~EventManager() = default;

void EventManager::triggerEvent(std::string type, std::string data)
{
    // Making the type costs more than finding that nobody listens.
    if (!isDerived() && !m_registry->mayHaveListeners(std::hash<std::string>()(type)))
    {
        return;
    }
    EventType eventType(std::move(type));
    if (hasListeners(eventType))
    {
        triggerEvent(Event(std::move(eventType), EventData(std::move(data)), ""));
    }
}

void EventManager::triggerEvent(Event event)
{
    if (m_registry->mayHaveListeners(event.getEventType().getHash()))
    {
        m_registry->dispatch(event);
    }
}

bool EventManager::hasListeners(const EventType& type) const
{
    return m_registry->hasListeners(type) || isDerived();
}

bool EventManager::isDerived() const
{
    return typeid(*this) != typeid(EventManager);
}
} // namespace velmoran::core::event
