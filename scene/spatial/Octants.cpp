#include "scene/spatial/Octants.h"

#include "scene/geometry/IPrimitive.h"

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3f;

constexpr unsigned int COUNT = 8;
} // namespace

Octants::Octants(const Vector3f& min, const Vector3f& max)
    : m_planes(planesOf(min, max)), m_isBox(isBox(min, max) && m_planes[1].allFinite())
{
}

bool Octants::areAsLargeAsTheCell() const
{
    const auto isEnd =
        m_planes[1].array() == m_planes[0].array() || m_planes[1].array() == m_planes[2].array();
    return isEnd.all();
}

unsigned int Octants::metBy(const FlatElements& elements, std::uint32_t element) const
{
    switch (elements.kind(element))
    {
    case FlatElements::TRIANGLE:
        return metByTriangle(elements.corners(element), elements.bounds(element));
    case FlatElements::OTHER:
        return metByOther(elements.other(element));
    case FlatElements::NEVER_MET:
        break;
    }
    return 0;
}

unsigned int Octants::metByTriangle(const Corners& corners,
                                    const FlatElements::Bounds& bounds) const
{
    const Vector3f& low = m_planes[0];
    const Vector3f& centre = m_planes[1];
    const Vector3f& high = m_planes[2];
    const bool isApart = bounds.max.x() < low.x() || bounds.max.y() < low.y() ||
                         bounds.max.z() < low.z() || bounds.min.x() > high.x() ||
                         bounds.min.y() > high.y() || bounds.min.z() > high.z();
    if (!m_isBox || isApart)
    {
        return 0;
    }
    const unsigned int reached = reachedBy(bounds);
    // What lies within the cell and crosses one plane only meets both sides of it.
    const bool isWithin = bounds.min.x() >= low.x() && bounds.min.y() >= low.y() &&
                          bounds.min.z() >= low.z() && bounds.max.x() <= high.x() &&
                          bounds.max.y() <= high.y() && bounds.max.z() <= high.z();
    const unsigned int crossed = (sides(bounds.min.x(), bounds.max.x(), centre.x()) + 1) / 4 +
                                 (sides(bounds.min.y(), bounds.max.y(), centre.y()) + 1) / 4 +
                                 (sides(bounds.min.z(), bounds.max.z(), centre.z()) + 1) / 4;
    if (isWithin && crossed <= 1)
    {
        return reached;
    }
    return boxesMet(corners, m_planes, reached);
}

unsigned int Octants::metByOther(const IPrimitive& element) const
{
    unsigned int met = 0;
    for (unsigned int octant = 0; octant < COUNT; ++octant)
    {
        met |= element.intersects(min(octant), max(octant)) ? 1U << octant : 0U;
    }
    return met;
}
} // namespace velmoran::scene
