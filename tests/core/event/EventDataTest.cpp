#include "core/event/Event.h"

#include <gtest/gtest.h>

namespace velmoran::core::event
{
TEST(EventData, GivesFieldsAsTheyStandAndNothingPastTheEnds)
{
    const EventData data("NodeAdded,Node0, arm,,last");
    const char* const fields[] = {"NodeAdded", "Node0", " arm", "", "last", ""};
    for (int i = 0; i < 6; ++i)
    {
        EXPECT_EQ(data.getArg(i), fields[i]) << i;
    }
    EXPECT_EQ(data.getArg(-1), "");
    EXPECT_EQ(EventData("").getArg(0), "");
    EXPECT_EQ(EventData("a,").getArg(1), "");
}
} // namespace velmoran::core::event
