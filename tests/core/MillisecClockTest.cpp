#include "core/system/MillisecClock.h"

#include <gtest/gtest.h>

using boost::posix_time::microsec_clock;
using boost::posix_time::ptime;
using velmoran::core::system::MillisecClock;

TEST(MillisecClock, TellsTheTimeInWholeMilliseconds)
{
    for (const bool universal : {true, false})
    {
        SCOPED_TRACE(universal ? "universal" : "local");
        const auto now = [universal]
        { return universal ? microsec_clock::universal_time() : microsec_clock::local_time(); };
        const ptime before = now();
        const ptime time = MillisecClock(universal).getTime();
        EXPECT_GT(time, before - boost::posix_time::milliseconds(1));
        EXPECT_LE(time, now());
        EXPECT_EQ(time.time_of_day().total_microseconds() % 1000, 0);
    }
}
