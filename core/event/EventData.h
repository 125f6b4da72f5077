#pragma once

#include "core/Export.h"

#include <string>

namespace velmoran::core::event
{
/// The arguments of an event: one string of fields joined by ",".
///
/// Nothing is quoted and no blank is trimmed: a field is exactly what stands
/// between two commas. An event without arguments carries the empty string.
class VELMORAN_CORE_EXPORT EventData
{
public:
    /// Takes the string as it is.
    EventData(std::string data);

    /// The same; null gives the empty string.
    EventData(const char* data);
    virtual ~EventData();

    /// Copies have a string of their own.
    EventData(const EventData& other);
    EventData(EventData&& other) noexcept;
    EventData& operator=(const EventData& other);
    EventData& operator=(EventData&& other) noexcept;

    /// The whole string.
    const std::string& getData() const;

    /// Field `index`, counted from 0; "" when there is no such field.
    /// Costs time in proportion to the length of the string.
    std::string getArg(int index) const;

private:
    std::string m_data;
};
} // namespace velmoran::core::event
