#include "tests/scene/Numbers.h"
#include "tests/scene/spatial/Faces.h"

#include <Eigen/LU>

#include <algorithm>
#include <cmath>

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3d;
using Eigen::Vector3f;
using Points = std::vector<Vector3f>;

constexpr float INFINITE = std::numeric_limits<float>::infinity();

bool meetsRay(const Points& triangle, const Vector3f& origin, const Vector3f& direction)
{
    return makeFace(triangle[0], triangle[1], triangle[2])->intersects(makeRay(origin, direction));
}

bool meetsBox(const Points& triangle, const Vector3f& min, const Vector3f& max)
{
    return makeFace(triangle[0], triangle[1], triangle[2])->intersects(min, max);
}

/// The part of a polygon where `sign * coordinate <= sign * plane`.
std::vector<Vector3d> clip(const std::vector<Vector3d>& polygon, int axis, double sign,
                           double plane)
{
    std::vector<Vector3d> inside;
    for (std::size_t i = 0; i < polygon.size(); ++i)
    {
        const Vector3d& from = polygon[i];
        const Vector3d& to = polygon[(i + 1) % polygon.size()];
        const double before = sign * (plane - from[axis]);
        const double after = sign * (plane - to[axis]);
        if (before >= 0.0)
        {
            inside.push_back(from);
        }
        if ((before > 0.0 && after < 0.0) || (before < 0.0 && after > 0.0))
        {
            inside.push_back(from + (to - from) * (before / (before - after)));
        }
    }
    return inside;
}

/// Whether anything of the triangle is left within the box, grown by `margin`.
bool isLeftWithin(const Points& triangle, const Vector3f& min, const Vector3f& max, double margin)
{
    std::vector<Vector3d> polygon;
    for (const Vector3f& point : triangle)
    {
        polygon.push_back(point.cast<double>());
    }
    for (int axis = 0; axis < 3; ++axis)
    {
        polygon = clip(polygon, axis, 1.0, static_cast<double>(max[axis]) + margin);
        polygon = clip(polygon, axis, -1.0, static_cast<double>(min[axis]) - margin);
    }
    return !polygon.empty();
}

/// How far inside its boundaries a ray meets a triangle, below 0 for a miss; by Cramer's rule.
double depthOfHit(const Points& triangle, const Vector3f& origin, const Vector3f& direction)
{
    const Vector3d corner = triangle[0].cast<double>();
    Eigen::Matrix3d system;
    system << triangle[1].cast<double>() - corner, triangle[2].cast<double>() - corner,
        -direction.cast<double>();
    const Vector3d found = system.inverse() * (origin.cast<double>() - corner);
    return std::min(found.minCoeff(), 1.0 - found[0] - found[1]);
}

/// Whether the box meets the triangle just when clipping leaves something of that, or they are too
/// close to tell; counts what is met.
bool agrees(const Points& triangle, const Vector3f& min, const Vector3f& max, double margin,
            int& met)
{
    const bool wanted = isLeftWithin(triangle, min, max, margin);
    const bool isSure = wanted == isLeftWithin(triangle, min, max, -margin);
    met += wanted && isSure ? 1 : 0;
    return !isSure || meetsBox(triangle, min, max) == wanted;
}

TEST(TriangleAndBox, AgreeWithClippingTheTriangle)
{
    Random random;
    int met = 0;
    for (int i = 0; i < 20000; ++i)
    {
        const Points triangle = random.points(i % 2 == 0 ? 1.5F : 3.0F);
        const Points corners = random.points(1.0F);
        ASSERT_TRUE(agrees(triangle, corners[0].cwiseMin(corners[1]),
                           corners[0].cwiseMax(corners[1]), 1e-9, met))
            << "round " << i;
    }
    EXPECT_GT(met, 4000);
    EXPECT_LT(met, 16000);
}

TEST(TriangleAndBox, MeetWhereTheyTouchOnly)
{
    // All about the box from -1 to 1; `push` takes the triangle off it.
    const std::tuple<std::string, Points, Vector3f> rows[] = {
        {"on a face", {{1, -3, -3}, {1, 3, -3}, {1, 0, 3}}, {1, 0, 0}},
        {"corner at a face", {{1, 0.3F, 0.1F}, {2, 1, 0}, {2, 0, 1}}, {1, 0, 0}},
        {"corner at a corner", {{1, 1, 1}, {2, 1, 1}, {1, 2, 3}}, {1, 1, 1}},
        {"face at an edge", {{2, 0, -3}, {0, 2, -3}, {1, 1, 5}}, {1, 1, 0}},
        {"edge at an edge", {{2, 0, 0.7F}, {0, 2, -0.3F}, {2, 2, 1}}, {1, 1, 0}},
        {"face at a corner", {{3, 0, 0}, {0, 3, 0}, {0, 0, 3}}, {1, 1, 1}},
        {"edge at a corner", {{0, 2, 1}, {2, 0, 1}, {2, 2, 3}}, {1, 1, 1}},
    };
    for (const auto& [name, triangle, push] : rows)
    {
        for (int turn = 0; turn < 6; ++turn) // the axes in turn, on both sides
        {
            SCOPED_TRACE(name + ", turn " + std::to_string(turn));
            const float side = turn < 3 ? 1.0F : -1.0F;
            Points touching;
            Points off;
            for (const Vector3f& p : triangle)
            {
                const Vector3f pushed = p + 1e-6F * push;
                touching.emplace_back(side * p[turn % 3], p[(turn + 1) % 3], p[(turn + 2) % 3]);
                off.emplace_back(side * pushed[turn % 3], pushed[(turn + 1) % 3],
                                 pushed[(turn + 2) % 3]);
            }
            EXPECT_TRUE(meetsBox(touching, {-1, -1, -1}, {1, 1, 1}));
            EXPECT_FALSE(meetsBox(off, {-1, -1, -1}, {1, 1, 1}));
        }
    }
    const Points crossing = {{-1, -1, 0}, {1, -1, 0}, {0, 1, 0}};
    EXPECT_TRUE(meetsBox(crossing, {0, 0, 0}, {0, 0, 0})); // a box of one point
    EXPECT_FALSE(meetsBox(crossing, {1, -1, -1}, {-1, 1, 1})) << "from above to below";
}

TEST(TriangleAndBox, AgreeWithClippingANeedle)
{
    Random random;
    int met = 0;
    for (const float thickness : {1e-4F, 1e-8F, 1e-15F, 1e-25F})
    {
        for (int i = 0; i < 3000; ++i)
        {
            // Two corners are close together, or all of them are nearly on a line.
            const Points far = random.points(1.0F);
            const Points close = random.points(thickness);
            const Vector3f start = i % 2 == 0 ? close[0] : Vector3f(-far[0]);
            Points triangle = {start, close[1], far[0]};
            std::rotate(triangle.begin(), triangle.begin() + i % 3, triangle.end());
            const Vector3f centre = 0.5F * far[0] + 0.2F * far[1];
            const Vector3f half = 0.2F * far[2].cwiseAbs();
            ASSERT_TRUE(agrees(triangle, centre - half, centre + half, 1e-6, met))
                << "round " << i << ", " << thickness;
        }
    }
    EXPECT_GT(met, 1500);
    EXPECT_LT(met, 9000);
}

TEST(TriangleAndRay, AgreeWithSolvingForTheMeetingPoint)
{
    Random random;
    int met = 0;
    for (int i = 0; i < 20000; ++i)
    {
        const Points triangle = random.points(1.0F);
        const Vector3f origin = random.point(2.0F);
        const Vector3f direction = random.point(0.5F) - origin;
        const double depth = depthOfHit(triangle, origin, direction);
        if (std::abs(depth) > 1e-9)
        {
            ASSERT_EQ(meetsRay(triangle, origin, direction), depth > 0.0) << "round " << i;
            met += depth > 0.0 ? 1 : 0;
        }
    }
    EXPECT_GT(met, 1000);
}

TEST(TriangleAndRay, MeetAtTheBoundaryAndFromTheOriginOn)
{
    const Points triangle = {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}};
    for (const Vector3f& target : Points{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}, {2, 2, 0}, {0, 3, 0}})
    {
        for (const Vector3f& away : Points{{1, 2, 3}, {-3, 1, -1}, {0, 0, 1e-20F}})
        {
            EXPECT_TRUE(meetsRay(triangle, target + away, -away)) << target << away;
            EXPECT_TRUE(meetsRay(triangle, target, away)) << "from the face itself";
            EXPECT_FALSE(meetsRay(triangle, target + away, away)) << "behind the origin";
        }
    }
    EXPECT_FALSE(meetsRay(triangle, {-1, 1, 0}, {1, 0, 0})) << "within the plane";
    EXPECT_FALSE(makeFace({0, 0, 0}, {4, 0, 0}, {0, 4, 0})->intersects(RayPtr()));
}

// From within a closed octahedron every ray gets out, also when it is aimed at an edge or a
// corner and rounded.
TEST(TriangleAndRay, NoRaySlipsBetweenNeighbours)
{
    Random random;
    for (int i = 0; i < 2000; ++i)
    {
        Points corners;
        for (int axis = 0; axis < 6; ++axis)
        {
            const float side = axis < 3 ? 5.0F : -5.0F;
            corners.push_back(side * Vector3f::Unit(axis % 3) + random.point(1.0F));
        }
        const Vector3f origin = random.point(0.5F);
        const float along = 0.01F * static_cast<float>(i % 101);
        const Vector3f target = corners[0] + along * (corners[1] - corners[0]);
        int met = 0;
        for (std::size_t face = 0; face < 8; ++face)
        {
            const Points triangle = {corners[face % 2 * 3], corners[1 + face / 2 % 2 * 3],
                                     corners[2 + face / 4 * 3]};
            met += meetsRay(triangle, origin, target - origin) ? 1 : 0;
        }
        ASSERT_GE(met, 1) << "round " << i;
    }
}

TEST(TriangleTests, AreNotMetByWhatHasNoSize)
{
    const Points good = {{-1, -1, 0}, {1, -1, 0}, {0, 1, 0}};
    const Vector3f origin(0, 0, 1);
    const Vector3f direction(0, 0, -1);
    ASSERT_TRUE(meetsRay(good, origin, direction));
    const std::vector<Points> unusable = {
        {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}},
        {{-1, 0, 0}, {1, 0, 0}, {1, 0, 0}},
        {{-1, -1, 0}, {-1, -1, 0}, {1, 1, 0}},
        {{-0.3F, -0.1F, 0}, {0.3F, 0.1F, 0}, {1.2F, 0.4F, 0}}, // on a line, exactly
        {{-1, -1, 0}, {1, -1, 0}, {0, NOT_A_NUMBER, 0}},
        {{-1, -1, 0}, {1, -1, 0}, {0, INFINITE, 0}},
    };
    for (const Points& triangle : unusable)
    {
        EXPECT_FALSE(meetsRay(triangle, origin, direction)) << triangle[2];
        EXPECT_FALSE(meetsBox(triangle, {-1, -1, -1}, {1, 1, 1})) << triangle[2];
    }
    const float above = std::nextafter(0.4F, 1.0F);
    const Points sliver = {{-0.3F, -0.1F, 0}, {0.3F, 0.1F, 0}, {1.2F, above, 0}};
    EXPECT_TRUE(meetsBox(sliver, {-1, -1, -1}, {1, 1, 1}));
    EXPECT_TRUE(meetsRay(sliver, {0.3F, 0.1F, 1}, direction));
    for (int axis = 0; axis < 3; ++axis)
    {
        for (const float bad : {NOT_A_NUMBER, INFINITE, -INFINITE})
        {
            const Vector3f offset = bad * Vector3f::Unit(axis).cwiseMax(1e-30F);
            EXPECT_FALSE(meetsRay(good, origin + offset, direction));
            EXPECT_FALSE(meetsRay(good, origin, direction + offset));
            EXPECT_FALSE(meetsBox(good, offset, {1, 1, 1}));
            EXPECT_FALSE(meetsBox(good, {-1, -1, -1}, offset));
        }
    }
    EXPECT_FALSE(meetsRay(good, {0, 0, 0}, {0, 0, 0}));
}
} // namespace
} // namespace velmoran::scene
