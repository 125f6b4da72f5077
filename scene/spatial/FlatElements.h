#pragma once

#include "scene/Forward.h"
#include "scene/geometry/TriangleCorners.h"

#include <Eigen/Core>

#include <cstdint>
#include <utility>
#include <vector>

namespace velmoran::scene
{
/// What sorting and picking read of a list of elements, so that they need not visit the
/// objects. Elements are numbered by their place in the list.
///
/// Snapshot: triangles stay as they were. Other elements are remembered by address and must
/// live as long as this.
class FlatElements
{
public:
    enum Kind : std::uint8_t
    {
        TRIANGLE,  ///< a `Triangle` with an area
        NEVER_MET, ///< a `Triangle` without one
        OTHER      ///< something that must be asked itself
    };

    struct Bounds
    {
        Eigen::Vector3f min;
        Eigen::Vector3f max;
    };

    using Other = std::pair<std::uint32_t, const IPrimitive*>; ///< with its number

    /// Reads `elements`, none of them empty.
    explicit FlatElements(const std::vector<IPrimitivePtr>& elements);

    std::uint32_t size() const { return static_cast<std::uint32_t>(m_kinds.size()); }
    Kind kind(std::uint32_t element) const { return m_kinds[element]; }

    /// Of a triangle with an area; zeros for all others.
    const Corners& corners(std::uint32_t element) const { return m_corners[element]; }

    /// NaN for all but triangles with an area.
    const Bounds& bounds(std::uint32_t element) const { return m_bounds[element]; }

    /// The largest amount of a coordinate of triangles with an area.
    float extent() const { return m_extent; }

    void prefetchCorners(std::uint32_t element) const
    {
        const char* const first = reinterpret_cast<const char*>(&m_corners[element]);
        __builtin_prefetch(first);
        __builtin_prefetch(first + sizeof(Corners) - 1); // they may lie across two cache lines
    }

    void prefetchBounds(std::uint32_t element) const { __builtin_prefetch(&m_bounds[element]); }

    /// One of the other kinds. Logarithmic in their number.
    const IPrimitive& other(std::uint32_t element) const;

    /// All of the other kinds, in order.
    const std::vector<Other>& others() const { return m_others; }

private:
    std::vector<Kind> m_kinds;
    std::vector<Corners> m_corners;
    std::vector<Bounds> m_bounds;
    std::vector<Other> m_others;
    float m_extent = 0.0F;
};
} // namespace velmoran::scene
