#pragma once

#include "scene/geometry/RoughBoxTest.h"
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
        const FlatElements::Bounds& bounds = elements.bounds(element);
        const unsigned int reached = reachedBy(bounds);
        if (reached == 0)
        {
            return metBy(elements, element);
        }
        return isSettled(reached, bounds) ? reached : metOf(reached, elements.corners(element));
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

    /// Whether a triangle that meets the cell meets all octants that its bounds reach: the only
    /// one, or the two on the sides of a plane when it is within the cell.
    bool isSettled(unsigned int reached, const FlatElements::Bounds& bounds) const
    {
        const unsigned int others = reached & (reached - 1);
        return others == 0 || ((others & (others - 1)) == 0 && isWithin(bounds));
    }

    bool isWithin(const FlatElements::Bounds& bounds) const
    {
        const Eigen::Vector3f& low = m_planes[0];
        const Eigen::Vector3f& high = m_planes[2];
        return bounds.min.x() >= low.x() && bounds.min.y() >= low.y() &&
               bounds.min.z() >= low.z() && bounds.max.x() <= high.x() &&
               bounds.max.y() <= high.y() && bounds.max.z() <= high.z();
    }

    unsigned int metOf(unsigned int reached, const Corners& corners) const;
    unsigned int metByTriangle(const Corners& corners, const FlatElements::Bounds& bounds) const;
    unsigned int metByOther(const IPrimitive& element) const;

    Planes m_planes;
    RoughBoxTest m_rough; ///< of the octants
    bool m_isBox;
};
} // namespace velmoran::scene
