#include "core/utils/Quaternion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

using velmoran::core::utils::Quaternion;
using Vec3 = velmoran::core::utils::Vector<float, 3>;

namespace
{
void expectAxisAngle(const Quaternion& rotation, const std::array<float, 4>& expected)
{
    const std::array<float, 4> found = rotation.toAxisAngle();
    for (std::size_t i = 0; i < 4; ++i)
    {
        EXPECT_NEAR(found[i], expected[i], i < 3 ? 2e-6f : 1e-4f) << i;
    }
}
} // namespace

TEST(Quaternion, GivesBackUnitAxisAndDegrees)
{
    const std::tuple<const char*, Vec3, float, std::array<float, 4>> rows[] = {
        {"longer axis", Vec3(0.0f, 3.0f, 4.0f), 90.0f, {{0.0f, 0.6f, 0.8f, 90.0f}}},
        {"tiny axis", Vec3(0.0f, 0.0f, 1e-42f), 30.0f, {{0.0f, 0.0f, 1.0f, 30.0f}}},
        {"beyond half a turn", Vec3(1.0f, 0.0f, 0.0f), 300.0f, {{1.0f, 0.0f, 0.0f, 300.0f}}},
        {"negative", Vec3(0.0f, 0.0f, 1.0f), -30.0f, {{0.0f, 0.0f, -1.0f, 30.0f}}},
        {"tiny angle", Vec3(0.0f, 1.0f, 0.0f), 1e-6f, {{0.0f, 1.0f, 0.0f, 1e-6f}}},
        {"whole turn", Vec3(0.0f, 1.0f, 0.0f), 360.0f, {{1.0f, 0.0f, 0.0f, 0.0f}}},
        {"zero axis", Vec3(0.0f, 0.0f, 0.0f), 180.0f, {{1.0f, 0.0f, 0.0f, 0.0f}}},
        {"infinite angle", Vec3(0.0f, 1.0f, 0.0f), INFINITY, {{1.0f, 0.0f, 0.0f, 0.0f}}},
    };
    for (const auto& [name, axis, angle, expected] : rows)
    {
        SCOPED_TRACE(name);
        expectAxisAngle(Quaternion(axis, angle), expected);
    }
}

// About z and then about x, a quarter each: x goes to z, y to -x and z to -y, so (1, -1, 1)
// stays. The other way round x goes to y, y to z and z to x, so (1, 1, 1) stays.
TEST(Quaternion, ProductTurnsByTheRightFactorFirst)
{
    const Quaternion x(Vec3(1.0f, 0.0f, 0.0f), 90.0f);
    const Quaternion z(Vec3(0.0f, 0.0f, 1.0f), 90.0f);
    const float d = 0.57735027f;
    expectAxisAngle(x * z, {d, -d, d, 120.0f});
    expectAxisAngle(z * x, {d, d, d, 120.0f});
}

TEST(Quaternion, TurningThereAndBackRestoresTheRotation)
{
    const Vec3 turnAxis(0.3f, -0.5f, 0.2f);
    for (const float angle : {6.0f, 179.99f, 180.0f, 181.0f, 354.0f})
    {
        SCOPED_TRACE(angle);
        const std::array<float, 4> start = {0.48f, 0.6f, 0.64f, angle};
        const auto turned =
            (Quaternion(Vec3(start[0], start[1], start[2]), angle) * Quaternion(turnAxis, 77.0f))
                .toAxisAngle();
        const Quaternion back = Quaternion(Vec3(turned[0], turned[1], turned[2]), turned[3]) *
                                Quaternion(turnAxis, -77.0f);
        expectAxisAngle(back, start);
    }
}
