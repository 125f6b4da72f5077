#include "core/logger/BasicDecorator.h"

#include "core/system/MillisecClock.h"

#include <array>
#include <cstdio>

namespace velmoran::core::logger
{
namespace
{
using SecondText = std::array<char, 64>;

void formatSecond(const boost::posix_time::ptime& time, SecondText& text)
{
    const auto day = time.date().year_month_day();
    const auto clock = time.time_of_day();
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02lld:%02lld:%02lld.",
                  static_cast<int>(day.year), static_cast<int>(day.month),
                  static_cast<int>(day.day), static_cast<long long>(clock.hours()),
                  static_cast<long long>(clock.minutes()), static_cast<long long>(clock.seconds()));
}

/// Appends the time to `line`. Messages come in bursts: only the first one of a second
/// pays for the text. What is kept needs no destructor: static objects may log after
/// those of this thread have run.
void appendTimeStamp(const boost::posix_time::ptime& time, std::string& line)
{
    thread_local boost::posix_time::ptime second;
    thread_local SecondText text{};
    const long long millis = time.time_of_day().total_milliseconds() % 1000;
    const boost::posix_time::ptime whole = time - boost::posix_time::milliseconds(millis);
    if (whole != second || text.front() == '\0')
    {
        formatSecond(whole, text);
        second = whole;
    }
    line += text.data();
    for (const long long divisor : {100LL, 10LL, 1LL})
    {
        line += static_cast<char>('0' + millis / divisor % 10);
    }
}
} // namespace

BasicDecorator::BasicDecorator() = default;

std::string BasicDecorator::decorate(const std::string& message)
{
    std::string line;
    line.reserve(message.size() + 32);
    appendTimeStamp(system::MillisecClock(false).getTime(), line);
    line += ' ';
    line += message;
    line += '\n';
    return line;
}
} // namespace velmoran::core::logger
