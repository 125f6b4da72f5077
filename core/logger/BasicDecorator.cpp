#include "core/logger/BasicDecorator.h"

#include "core/system/MillisecClock.h"

#include <array>
#include <cstdio>

namespace velmoran::core::logger
{
namespace
{
std::string timeStamp(const boost::posix_time::ptime& time)
{
    const auto day = time.date().year_month_day();
    const auto clock = time.time_of_day();
    const long long millis = clock.total_milliseconds() % 1000;
    std::array<char, 64> text;
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02lld:%02lld:%02lld.%03lld",
                  static_cast<int>(day.year), static_cast<int>(day.month),
                  static_cast<int>(day.day), static_cast<long long>(clock.hours()),
                  static_cast<long long>(clock.minutes()), static_cast<long long>(clock.seconds()),
                  millis);
    return text.data();
}
} // namespace

BasicDecorator::BasicDecorator() = default;

std::string BasicDecorator::decorate(const std::string& message)
{
    std::string line = timeStamp(system::MillisecClock(false).getTime());
    line.reserve(line.size() + message.size() + 2);
    line += ' ';
    line += message;
    line += '\n';
    return line;
}
} // namespace velmoran::core::logger
