#pragma once

#include <Eigen/Core>

namespace velmoran::scene
{
/// A number for each of four things, computed with at once.
using Lanes = Eigen::Array4f;

/// Four points or vectors side by side. The functions are to be inlined, so that lanes stay in
/// registers.
struct PointLanes
{
    EIGEN_ALWAYS_INLINE PointLanes(const Lanes& allX, const Lanes& allY, const Lanes& allZ)
        : x(allX), y(allY), z(allZ)
    {
    }

    EIGEN_ALWAYS_INLINE PointLanes(const Eigen::Vector3f& a, const Eigen::Vector3f& b,
                                   const Eigen::Vector3f& c, const Eigen::Vector3f& d)
        : x(a.x(), b.x(), c.x(), d.x()),
          y(a.y(), b.y(), c.y(), d.y()),
          z(a.z(), b.z(), c.z(), d.z())
    {
    }

    /// The same point in all lanes.
    EIGEN_ALWAYS_INLINE explicit PointLanes(const Eigen::Vector3f& point)
        : x(Lanes::Constant(point.x())),
          y(Lanes::Constant(point.y())),
          z(Lanes::Constant(point.z()))
    {
    }

    EIGEN_ALWAYS_INLINE PointLanes operator-(const PointLanes& other) const
    {
        return {x - other.x, y - other.y, z - other.z};
    }

    EIGEN_ALWAYS_INLINE Lanes dot(const PointLanes& other) const
    {
        return x * other.x + y * other.y + z * other.z;
    }

    EIGEN_ALWAYS_INLINE PointLanes cross(const PointLanes& other) const
    {
        return {y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x};
    }

    /// The largest amount of a component.
    EIGEN_ALWAYS_INLINE Lanes largest() const { return x.abs().max(y.abs()).max(z.abs()); }

    Lanes x;
    Lanes y;
    Lanes z;
};
} // namespace velmoran::scene
