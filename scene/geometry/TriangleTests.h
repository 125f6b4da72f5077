#pragma once

#include <Eigen/Core>
#include <boost/optional.hpp>

#include <array>
#include <limits>

namespace velmoran::scene
{
// Where a triangle of plain points meets a box or a ray.
//
// Computed in double precision from float coordinates, with bounds for the rounding errors:
// what touches always counts, and a gap counts as touching only when it is around 1e-15 of
// the distances between the points.

using Corners = std::array<Eigen::Vector3f, 3>; ///< of a triangle

/// Whether the corners are finite and do not lie on one line. Decided exactly: a sliver has
/// an area, however thin it is.
bool hasArea(const Corners& corners);

/// Whether the points are finite and `min` is nowhere above `max`.
bool isBox(const Eigen::Vector3f& min, const Eigen::Vector3f& max);

/// Three planes across each axis, in ascending order: a cell's minimum, centre and maximum.
using Planes = std::array<Eigen::Vector3f, 3>;

// The eight boxes between them are numbered 0 to 7 and stand for bits: a box is on the high
// side of the centre in x when its bit 0 is set, in y for bit 1 and in z for bit 2. These are
// the boxes on no side, the low one, the high one and both.
constexpr std::array<unsigned int, 4> ALONG_X = {0, 0x55, 0xAA, 0xFF};
constexpr std::array<unsigned int, 4> ALONG_Y = {0, 0x33, 0xCC, 0xFF};
constexpr std::array<unsigned int, 4> ALONG_Z = {0, 0x0F, 0xF0, 0xFF};

/// Which boxes between `planes` the triangle meets, of those that its bounds meet: `reached`.
/// The boundary of both counts. The corners have an area, the planes are finite.
///
/// Akenine-Möller's separating axes (2001), for all boxes at once. Where they stand in the
/// projections to the coordinate planes is asked edge by edge from the outside, which saves
/// half of the work (Schwarz and Seidel, 2010).
unsigned int boxesMet(const Corners& corners, const Planes& planes, unsigned int reached);

/// Whether the triangle meets the box; the boundary of both counts. The corners have an area.
bool meetsBox(const Corners& corners, const Eigen::Vector3f& min, const Eigen::Vector3f& max);

/// A ray, prepared to be tested against triangles by the method of Möller and Trumbore (1997).
class TriangleRayTest
{
public:
    /// `extent`: the largest amount of a coordinate of the triangles to come. Knowing it spares
    /// time, as most triangles are missed by far.
    TriangleRayTest(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction,
                    float extent = std::numeric_limits<float>::infinity());

    /// Whether origin and direction are finite and the direction is not zero. Otherwise there
    /// is nothing to test.
    bool isUsable() const;

    /// Where the ray meets the triangle, from either side, in multiples of the direction and
    /// not below 0; the boundary of the triangle and the origin count. None when it doesn't
    /// meet it or runs within its plane. None for corners that are all the same; other
    /// corners have an area.
    boost::optional<double> meets(const Corners& corners) const;

private:
    Eigen::Vector3d m_origin;
    Eigen::Vector3d m_direction;
    double m_error; ///< no triple product of the test has a larger one
};
} // namespace velmoran::scene
