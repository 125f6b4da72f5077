#include "core/event/EventType.h"

#include <boost/make_shared.hpp>

#include <functional>
#include <utility>

namespace velmoran::core::event
{
struct EventType::Name
{
    explicit Name(std::string name) : text(std::move(name)), hash(std::hash<std::string>()(text)) {}

    const std::string text;
    const std::size_t hash;
};

EventType::EventType(std::string name) : m_name(boost::make_shared<const Name>(std::move(name))) {}

EventType::EventType(const char* name) : EventType(std::string(name != nullptr ? name : "")) {}

EventType::~EventType() = default;

EventType::EventType(const EventType& other) = default;

EventType& EventType::operator=(const EventType& other) = default;

EventType::EventType(EventType&& other) noexcept = default;

EventType& EventType::operator=(EventType&& other) noexcept = default;

const std::string& EventType::getName() const
{
    return m_name->text;
}

std::size_t EventType::getHash() const
{
    return m_name->hash;
}

bool operator==(const EventType& a, const EventType& b)
{
    return a.m_name == b.m_name ||
           (a.m_name->hash == b.m_name->hash && a.m_name->text == b.m_name->text);
}

bool operator!=(const EventType& a, const EventType& b)
{
    return !(a == b);
}
} // namespace velmoran::core::event
