#include "scene/geometry/TriangleRayTest.h"

#include "scene/geometry/PointLanes.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3d;
using Eigen::Vector3f;
using LaneTriangles = std::array<const Corners*, TriangleRayTest::LANES>;

constexpr double INFINITE = std::numeric_limits<double>::infinity();

// In floats, with a direction of at most 1. A triple product with an edge sums up six products,
// each of them up to offset times edge and rounded seven times: 42 units of 2^-24. The
// determinant has two edges, so twice that. The third distance is a sum of all three, and a
// determinant whose sign is rounded away adds its own error once more: 300 units, below 2^-15.
constexpr double LANE_ROUNDING = 0x1p-15;
/// Beyond what gets lost where a product is too small for a float.
constexpr float LANE_UNDERFLOW = 1e-37F;
/// Up to this product of offset and extent no product of the lanes is too large for a float.
constexpr double LANE_LIMIT = 1e15;

constexpr LaneBits LANE_NUMBERS = {1, 2, 4, 8}; ///< as bits

PointLanes cornersOf(const LaneTriangles& triangles, std::size_t corner)
{
    return {(*triangles[0])[corner], (*triangles[1])[corner], (*triangles[2])[corner],
            (*triangles[3])[corner]};
}

/// Scaled by a power of two, which is exact but for components that are nothing beside the
/// largest; that is between 0.5 and 1.
Vector3f toUnitScale(const Vector3d& direction)
{
    int exponent = 0;
    std::frexp(direction.cwiseAbs().maxCoeff(), &exponent);
    return (direction * std::ldexp(1.0, -exponent)).cast<float>();
}

/// a * (b x c) with the amounts of all products: what its rounding error is a fraction of.
double amountOf(const Vector3d& a, const Vector3d& b, const Vector3d& c)
{
    const Vector3d x = a.cwiseAbs();
    const Vector3d y = b.cwiseAbs();
    const Vector3d z = c.cwiseAbs();
    return x[0] * (y[1] * z[2] + y[2] * z[1]) + x[1] * (y[2] * z[0] + y[0] * z[2]) +
           x[2] * (y[0] * z[1] + y[1] * z[0]);
}

} // namespace

TriangleRayTest::TriangleRayTest(const Vector3f& origin, const Vector3f& direction, float extent)
    : m_origin(origin.cast<double>()),
      m_direction(direction.cast<double>()),
      m_laneDirection(toUnitScale(m_direction))
{
    const auto reach = static_cast<double>(extent);
    // Offsets are sums of two coordinates, as are edges, of which one product has two.
    const double offset = m_origin.cwiseAbs().maxCoeff() + reach;
    const double longest = std::max(m_direction.cwiseAbs().maxCoeff() * offset, 2 * reach * offset);
    m_error = PRODUCT_ROUNDING * 6 * longest * 2 * reach;
    m_laneError = offset * reach < LANE_LIMIT ? static_cast<float>(LANE_ROUNDING * offset)
                                              : std::numeric_limits<float>::infinity();
}

bool TriangleRayTest::isUsable() const
{
    return m_origin.allFinite() && m_direction.allFinite() && !m_direction.isZero(0.0);
}

unsigned int TriangleRayTest::mayMeet(const LaneTriangles& triangles) const
{
    const PointLanes corner = cornersOf(triangles, 0);
    const PointLanes edge1 = cornersOf(triangles, 1) - corner;
    const PointLanes edge2 = cornersOf(triangles, 2) - corner;
    const PointLanes offset = PointLanes(m_origin.cast<float>()) - corner;
    const PointLanes direction(m_laneDirection);
    const PointLanes p = direction.cross(edge2);
    const Lanes determinant = edge1.dot(p);
    const Lanes u = offset.dot(p);
    const Lanes v = direction.dot(offset.cross(edge1));
    // Times the determinant, as its sign tells the side that the ray comes from.
    const Lanes error = m_laneError * edge1.largest().max(edge2.largest()) * determinant.abs();
    const Lanes inside =
        (u * determinant).min(v * determinant).min((determinant - u - v) * determinant) + error +
        LANE_UNDERFLOW;
    return anyOf(bitsAbove(inside, 0.0F, LANE_NUMBERS));
}

double TriangleRayTest::meets(const Corners& corners) const
{
    const auto isBelow = [this](double value, const Vector3d& a, const Vector3d& b,
                                const Vector3d& c) // a triple product of these
    { return value < 0.0 && (value < -m_error || value < -PRODUCT_ROUNDING * amountOf(a, b, c)); };

    const Vector3d corner = corners[0].cast<double>();
    const Vector3d edge1 = corners[1].cast<double>() - corner;
    const Vector3d edge2 = corners[2].cast<double>() - corner;
    const Vector3d offset = m_origin - corner;
    const Vector3d p = m_direction.cross(edge2);
    const double determinant = edge1.dot(p);
    const double side = determinant < 0.0 ? -1.0 : 1.0;
    const double u = side * offset.dot(p);
    if (isBelow(u, offset, m_direction, edge2))
    {
        return INFINITE;
    }
    const Vector3d q = offset.cross(edge1);
    const double v = side * m_direction.dot(q);
    if (isBelow(v, m_direction, offset, edge1))
    {
        return INFINITE;
    }
    const double depth = side * determinant;
    const double w = depth - u - v;
    if (w < -3 * m_error)
    {
        return INFINITE;
    }
    const double t = side * edge2.dot(q);
    const double error = PRODUCT_ROUNDING * amountOf(edge1, m_direction, edge2);
    const double wError = error + PRODUCT_ROUNDING * (amountOf(offset, m_direction, edge2) +
                                                      amountOf(m_direction, offset, edge1));
    if (depth <= error || w < -wError || isBelow(t, edge2, offset, edge1))
    {
        return INFINITE;
    }
    return std::max(t, 0.0) / depth;
}
} // namespace velmoran::scene
