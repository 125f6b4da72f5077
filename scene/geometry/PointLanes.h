#pragma once

#include <Eigen/Core>

#include <cstdint>
#include <cstring>

namespace velmoran::scene
{
/// A number for each of four things, computed with at once.
using Lanes = Eigen::Array4f;

using LaneBits [[gnu::vector_size(16)]] = std::int32_t; ///< some bits for each of them

constexpr LaneBits allLanes(unsigned int bits)
{
    const auto number = static_cast<std::int32_t>(bits);
    return LaneBits{number, number, number, number};
}

/// The bits of those lanes that are above a limit, or are not a number.
EIGEN_ALWAYS_INLINE LaneBits bitsAbove(const Lanes& lanes, float limit, const LaneBits& bits)
{
    using Floats [[gnu::vector_size(16)]] = float;
    Floats floats;
    std::memcpy(&floats, lanes.data(), sizeof(floats));
    return ~(floats <= limit) & bits;
}

/// The bits of all lanes together.
EIGEN_ALWAYS_INLINE unsigned int anyOf(const LaneBits& bits)
{
    return static_cast<unsigned int>(bits[0] | bits[1] | bits[2] | bits[3]);
}

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

    template <int Axis>
    EIGEN_ALWAYS_INLINE const Lanes& along() const
    {
        return Axis == 0 ? x : Axis == 1 ? y : z;
    }

    /// The largest amount of a component.
    EIGEN_ALWAYS_INLINE Lanes largest() const { return x.abs().max(y.abs()).max(z.abs()); }

    Lanes x;
    Lanes y;
    Lanes z;
};
} // namespace velmoran::scene
