#include "core/event/Event.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace velmoran::core::event
{
struct Event::Content
{
    Content(EventType&& eventType, EventData&& eventData, std::string&& eventSource)
        : type(std::move(eventType)), data(std::move(eventData)), source(std::move(eventSource))
    {
    }

    const EventType type;
    const EventData data;
    const std::string source;
};

Event::Event(EventType type, EventData data, std::string source)
    : m_content(
          boost::make_shared<const Content>(std::move(type), std::move(data), std::move(source)))
{
}

Event::~Event() = default;

Event::Event(const Event& other) = default;

Event& Event::operator=(const Event& other) = default;

Event::Event(Event&& other) noexcept = default;

Event& Event::operator=(Event&& other) noexcept = default;

const EventType& Event::getEventType() const
{
    return m_content->type;
}

const EventData& Event::getEventData() const
{
    return m_content->data;
}

const std::string& Event::getSource() const
{
    return m_content->source;
}
} // namespace velmoran::core::event
