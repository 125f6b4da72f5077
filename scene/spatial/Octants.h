#pragma once

#include "scene/geometry/TriangleBoxTest.h"
#include "scene/spatial/FlatElements.h"

#include <Eigen/Core>

#include <array>
#include <cstdint>

namespace velmoran::scene
{
/// The eight parts of a cell, in the order that `OctreeNode` tells.
class Octants
{
public:
    Octants(const Eigen::Vector3f& min, const Eigen::Vector3f& max);

    /// Minimum, centre and maximum of a cell.
    static Planes planesOf(const Eigen::Vector3f& min, const Eigen::Vector3f& max)
    {
        return {min, (min + max) * 0.5F, max};
    }

    static Eigen::Vector3f minOf(const Planes& planes, unsigned int octant)
    {
        return {planes[octant & 1U].x(), planes[(octant >> 1U) & 1U].y(), planes[octant >> 2U].z()};
    }

    static Eigen::Vector3f maxOf(const Planes& planes, unsigned int octant)
    {
        return {planes[1 + (octant & 1U)].x(), planes[1 + ((octant >> 1U) & 1U)].y(),
                planes[1 + (octant >> 2U)].z()};
    }

    Eigen::Vector3f min(unsigned int octant) const { return minOf(m_planes, octant); }
    Eigen::Vector3f max(unsigned int octant) const { return maxOf(m_planes, octant); }

    /// Whether no part is smaller than the cell, as there are no numbers in between.
    bool areAsLargeAsTheCell() const;

    /// The octants that an element meets, one that is known to meet the cell as a whole: bit i
    /// for octant i.
    unsigned int metWithin(const FlatElements& elements, std::uint32_t element) const
    {
        const unsigned int reached = reachedBy(elements.bounds(element));
        // What meets the cell meets the only part of it that it reaches.
        const bool isOne = reached != 0 && (reached & (reached - 1)) == 0;
        return isOne ? reached : metBy(elements, element);
    }

    /// The same for any element.
    unsigned int metBy(const FlatElements& elements, std::uint32_t element) const;

private:
    /// The octants on those sides of the centre where bounds are; none for bounds of NaN.
    unsigned int reachedBy(const FlatElements::Bounds& bounds) const
    {
        const Eigen::Vector3f& centre = m_planes[1];
        const unsigned int x = sides(bounds.min.x(), bounds.max.x(), centre.x());
        const unsigned int y = sides(bounds.min.y(), bounds.max.y(), centre.y());
        const unsigned int z = sides(bounds.min.z(), bounds.max.z(), centre.z());
        return ALONG_X[x] & ALONG_Y[y] & ALONG_Z[z];
    }

    /// Bit 0 for the low side of a centre, bit 1 for the high one.
    static unsigned int sides(float min, float max, float centre)
    {
        return static_cast<unsigned int>(min <= centre) |
               (static_cast<unsigned int>(max >= centre) << 1U);
    }

    unsigned int metByTriangle(const Corners& corners, const FlatElements::Bounds& bounds) const;
    unsigned int metByOther(const IPrimitive& element) const;

    Planes m_planes;
    bool m_isBox;
};
} // namespace velmoran::scene
