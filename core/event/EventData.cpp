#include "core/event/EventData.h"

#include <utility>

namespace velmoran::core::event
{
EventData::EventData(std::string data) : m_data(std::move(data)) {}

EventData::EventData(const char* data) : m_data(data != nullptr ? data : "") {}

EventData::~EventData() = default;

EventData::EventData(const EventData& other) = default;

EventData::EventData(EventData&& other) noexcept = default;

EventData& EventData::operator=(const EventData& other) = default;

EventData& EventData::operator=(EventData&& other) noexcept = default;

const std::string& EventData::getData() const
{
    return m_data;
}

std::string EventData::getArg(int index) const
{
    if (index < 0)
    {
        return "";
    }
    std::size_t begin = 0;
    for (int skipped = 0; skipped < index; ++skipped)
    {
        const std::size_t comma = m_data.find(',', begin);
        if (comma == std::string::npos)
        {
            return "";
        }
        begin = comma + 1;
    }
    const std::size_t end = m_data.find(',', begin);
    return m_data.substr(begin, end == std::string::npos ? end : end - begin);
}
} // namespace velmoran::core::event
