#include "core/utils/Vector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

using Vec3 = velmoran::core::utils::Vector<float, 3>;

TEST(Vector, AccessEndsWithTheStoredElements)
{
    Vec3 vector(1.0f, 2.0f, 3.0f);
    const float expected[] = {1.0f, 2.0f, 3.0f, 0.0f, 0.0f, 0.0f};
    for (std::size_t i = 0; i < 6; ++i)
    {
        EXPECT_EQ(vector[i], expected[i]) << i;
    }
    EXPECT_THROW(vector[6], std::out_of_range);
    EXPECT_THROW(vector[static_cast<std::size_t>(-1)], std::out_of_range);

    const Vec3 zeros;
    EXPECT_EQ(zeros, Vec3(0.0f, 0.0f, 0.0f));
    EXPECT_THROW(zeros[3], std::out_of_range);

    vector[2] = 4.0f;
    EXPECT_NE(vector, Vec3(1.0f, 2.0f, 3.0f));
}

TEST(Vector, MinAndMaxTakeTheSecondComponentWhereTheyCanNotDecide)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    Vec3 out;
    Vec3::min(out, Vec3(1.0f, 5.0f, nan), Vec3(2.0f, 4.0f, 7.0f));
    EXPECT_EQ(out, Vec3(1.0f, 4.0f, 7.0f));
    Vec3::max(out, Vec3(1.0f, 5.0f, nan), Vec3(2.0f, 4.0f, 7.0f));
    EXPECT_EQ(out, Vec3(2.0f, 5.0f, 7.0f));

    // 0 and -0 are equal, yet tell which of the two was stored.
    const Vec3 plus(0.0f, 0.0f, 0.0f);
    const Vec3 minus(-0.0f, -0.0f, -0.0f);
    for (const auto pick : {&Vec3::min, &Vec3::max})
    {
        pick(out, plus, minus);
        EXPECT_TRUE(std::signbit(out[0]));
        pick(out, minus, plus);
        EXPECT_FALSE(std::signbit(out[0]));
    }

    Vec3 bounds(3.0f, -1.0f, 0.0f);
    Vec3::min(bounds, bounds, Vec3(2.0f, 2.0f, 2.0f));
    EXPECT_EQ(bounds, Vec3(2.0f, -1.0f, 0.0f));
}
