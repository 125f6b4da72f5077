#pragma once

#include "scene/geometry/TriangleCorners.h"

#include <Eigen/Core>

#include <array>
#include <limits>

namespace velmoran::scene
{
/// A ray, prepared to be tested against triangles by the method of Möller and Trumbore (1997).
class TriangleRayTest
{
public:
    static constexpr std::size_t LANES = 4;

    /// `extent`: the largest amount of a coordinate of the triangles to come. Knowing it spares
    /// time, as most triangles are missed by far; without it `mayMeet` leaves out none.
    TriangleRayTest(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction,
                    float extent = std::numeric_limits<float>::infinity());

    /// Whether origin and direction are finite and the direction is not zero. Otherwise there
    /// is nothing to test.
    bool isUsable() const;

    /// Which of some triangles the ray may meet: bit i for triangle i. Left out are triangles
    /// that `meets` misses for sure, as floats show.
    unsigned int mayMeet(const std::array<const Corners*, LANES>& triangles) const;

    /// Where the ray meets the triangle, from either side, in multiples of the direction and
    /// not below 0; the boundary of the triangle and the origin count. Infinity when it doesn't
    /// meet it or runs within its plane, and for corners that are all the same; other corners
    /// have an area.
    double meets(const Corners& corners) const;

private:
    Eigen::Vector3d m_origin;
    Eigen::Vector3d m_direction;
    double m_error;                  ///< no triple product of the test has a larger one
    Eigen::Vector3f m_laneDirection; ///< scaled by a power of two, to at most 1
    float m_laneError;               ///< of distances from edges of length 1, in floats
};
} // namespace velmoran::scene
