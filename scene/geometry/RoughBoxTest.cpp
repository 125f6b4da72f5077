#include "scene/geometry/RoughBoxTest.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <array>
#include <cmath>

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3f;

constexpr unsigned int ALL = 0xFF;

// Errors in units of 2^-24. A distance from an edge sums up four products, each of them up to
// edge times reach and rounded six times: 24. A component of the normal is off by 8 edges
// squared; a distance from the plane sums up six products, each up to twice edge squared times
// reach, rounded seven times besides that: 132.
constexpr float AREA_ROUNDING = 0x1p-20F;
constexpr float EDGE_ROUNDING = 0x1p-18F;
constexpr float PLANE_ROUNDING = 0x1p-16F;

// Within these no product that counts is too small or too large for a float.
constexpr float LEAST_EDGE = 1e-10F;
constexpr float LARGEST_REACH = 1e12F;

// Boxes on the low and the high side of the centre along each axis, for all lanes.
constexpr std::array<LaneBits, 3> ON_LOW = {allLanes(ALONG_X[1]), allLanes(ALONG_Y[1]),
                                            allLanes(ALONG_Z[1])};
constexpr std::array<LaneBits, 3> ON_HIGH = {allLanes(ALONG_X[2]), allLanes(ALONG_Y[2]),
                                             allLanes(ALONG_Z[2])};
// The quarters along z, a lane each.
constexpr LaneBits LOW_QUARTERS = {0x01, 0x02, 0x04, 0x08};
constexpr LaneBits HIGH_QUARTERS = {0x10, 0x20, 0x40, 0x80};
} // namespace

/// A triangle and what the axes tell of it: a box is beside it when one distance is above the
/// error, and is not when all are below its negative.
class RoughBoxTest::Comparison
{
public:
    EIGEN_ALWAYS_INLINE Comparison(const RoughBoxTest& test, const Corners& corners)
        : m_test(test),
          m_from(corners[0], corners[1], corners[2], corners[0]),
          m_edges(PointLanes(corners[1], corners[2], corners[0], corners[1]) - m_from),
          m_offsets(PointLanes(test.m_centre) - m_from),
          m_normal(edge(0).cross(edge(1))),
          m_longest(m_edges.largest().maxCoeff()),
          m_reach(m_longest + test.m_size)
    {
    }

    EIGEN_ALWAYS_INLINE bool isOfUsableSize() const
    {
        return m_longest > LEAST_EDGE && m_reach < LARGEST_REACH;
    }

    /// The axes besides `X` and `Y` and across an edge: distances from edges, a lane each,
    /// outwards and times their lengths.
    template <int X, int Y>
    EIGEN_ALWAYS_INLINE void compareEdges()
    {
        const Lanes& edgeX = m_edges.along<X>();
        const Lanes& edgeY = m_edges.along<Y>();
        const float twiceArea = m_normal.coeff(3 - X - Y);
        if (std::abs(twiceArea) <= AREA_ROUNDING * m_longest * m_longest)
        {
            // Beside a line along an axis there are no boxes that bounds meet.
            const bool isAlongAxis = (edgeX == 0.0F).all() || (edgeY == 0.0F).all();
            m_notWithin |= isAlongAxis ? allLanes(0) : allLanes(ALL);
            return;
        }
        const float outwards = twiceArea > 0.0F ? 1.0F : -1.0F;
        const Lanes x = outwards * edgeY;
        const Lanes y = -outwards * edgeX;
        const Lanes centre = x * m_offsets.along<X>() + y * m_offsets.along<Y>();
        const Lanes lowX = (x * m_test.m_low.along<X>()).min(0.0F) + centre;
        const Lanes highX = (x * m_test.m_high.along<X>()).min(0.0F) + centre;
        const Lanes lowY = (y * m_test.m_low.along<Y>()).min(0.0F);
        const Lanes highY = (y * m_test.m_high.along<Y>()).min(0.0F);
        const float error = EDGE_ROUNDING * m_longest * m_reach;
        add(lowX + lowY, error, ON_LOW[X] & ON_LOW[Y]);
        add(highX + lowY, error, ON_HIGH[X] & ON_LOW[Y]);
        add(lowX + highY, error, ON_LOW[X] & ON_HIGH[Y]);
        add(highX + highY, error, ON_HIGH[X] & ON_HIGH[Y]);
    }

    /// The normal: distances from the plane on the side where the boxes are, times the
    /// normal's length.
    EIGEN_ALWAYS_INLINE void comparePlane()
    {
        const Lanes x = m_normal.x() * m_test.m_xOfQuarters;
        const Lanes y = m_normal.y() * m_test.m_yOfQuarters;
        const float centre = m_normal.x() * m_offsets.x[0] + m_normal.y() * m_offsets.y[0] +
                             m_normal.z() * m_offsets.z[0];
        const Lanes before = x.min(0.0F) + y.min(0.0F) + centre;
        const Lanes behind = x.max(0.0F) + y.max(0.0F) + centre;
        const float error = PLANE_ROUNDING * m_longest * m_longest * m_reach;
        const float low = m_normal.z() * m_test.m_low.z[0];
        const float high = m_normal.z() * m_test.m_high.z[0];
        add((before + std::min(low, 0.0F)).max(-(behind + std::max(low, 0.0F))), error,
            LOW_QUARTERS);
        add((before + std::min(high, 0.0F)).max(-(behind + std::max(high, 0.0F))), error,
            HIGH_QUARTERS);
    }

    EIGEN_ALWAYS_INLINE Answer answer() const
    {
        const unsigned int beside = anyOf(m_beside);
        return {beside, anyOf(m_notWithin) & ~beside};
    }

private:
    EIGEN_ALWAYS_INLINE Vector3f edge(Eigen::Index i) const
    {
        return {m_edges.x[i], m_edges.y[i], m_edges.z[i]};
    }

    EIGEN_ALWAYS_INLINE void add(const Lanes& distances, float error, const LaneBits& boxes)
    {
        m_beside |= bitsAbove(distances, error, boxes);
        m_notWithin |= bitsAbove(distances, -error, boxes);
    }

    const RoughBoxTest& m_test;
    PointLanes m_from;    ///< corners, a lane each; the last one is the first again
    PointLanes m_edges;   ///< to the next corners
    PointLanes m_offsets; ///< to the centre of the boxes
    Vector3f m_normal;
    float m_longest; ///< no component of the edges is larger
    float m_reach;   ///< nor one of any way from a corner to a box
    LaneBits m_beside = {};
    LaneBits m_notWithin = {};
};

RoughBoxTest::RoughBoxTest(const Planes& planes)
    : m_low(Vector3f(planes[0] - planes[1])),
      m_high(Vector3f(planes[2] - planes[1])),
      m_xOfQuarters(m_low.x[0], m_high.x[0], m_low.x[0], m_high.x[0]),
      m_yOfQuarters(m_low.y[0], m_low.y[0], m_high.y[0], m_high.y[0]),
      m_centre(planes[1]),
      m_size((planes[2] - planes[0]).maxCoeff())
{
}

RoughBoxTest::Answer RoughBoxTest::compare(const Corners& corners) const
{
    Comparison comparison(*this, corners);
    if (!comparison.isOfUsableSize())
    {
        return {0, ALL};
    }
    comparison.compareEdges<0, 1>();
    comparison.compareEdges<1, 2>();
    comparison.compareEdges<2, 0>();
    comparison.comparePlane();
    return comparison.answer();
}
} // namespace velmoran::scene
