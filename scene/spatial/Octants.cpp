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
    : m_planes(planesOf(min, max)),
      m_rough(m_planes),
      m_isBox(isBox(min, max) && m_planes[1].allFinite())
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
    const Vector3f& high = m_planes[2];
    const bool isApart = bounds.max.x() < low.x() || bounds.max.y() < low.y() ||
                         bounds.max.z() < low.z() || bounds.min.x() > high.x() ||
                         bounds.min.y() > high.y() || bounds.min.z() > high.z();
    if (!m_isBox || isApart)
    {
        return 0;
    }
    const unsigned int reached = reachedBy(bounds);
    return isWithin(bounds) && isSettled(reached, bounds) ? reached : metOf(reached, corners);
}

/// Of the octants that the bounds reach.
unsigned int Octants::metOf(unsigned int reached, const Corners& corners) const
{
    const RoughBoxTest::Answer rough = m_rough.compare(corners);
    const unsigned int met = reached & ~rough.beside;
    return (met & rough.unclear) == 0 ? met : boxesMet(corners, m_planes, met);
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
