#include "core/system/MillisecClock.h"

namespace velmoran::core::system
{
MillisecClock::MillisecClock(bool universal) : m_universal(universal) {}

boost::posix_time::ptime MillisecClock::getTime()
{
    using boost::posix_time::microsec_clock;
    const boost::posix_time::ptime now =
        m_universal ? microsec_clock::universal_time() : microsec_clock::local_time();
    return boost::posix_time::ptime(
        now.date(), boost::posix_time::milliseconds(now.time_of_day().total_milliseconds()));
}
} // namespace velmoran::core::system
