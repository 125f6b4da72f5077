#include "scene/spatial/CellSearch.h"

#include "scene/spatial/Bits.h"
#include "scene/spatial/Octants.h"
#include "scene/spatial/Ray.h"

#include <algorithm>
#include <cmath>

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3d;

constexpr double INFINITE = std::numeric_limits<double>::infinity();

/// Beyond every hit, nearer than a miss.
constexpr double FARTHEST = std::numeric_limits<double>::max();

/// Stands for 1/0: beyond every distance, but 0 times it is 0.
constexpr double HUGE_INVERSE = 1e200;

/// Widens cells on each side, in extents of the scene. The ends of intervals are rounded by less
/// than 2^-50 of that; the rest is for triangles that the ray test counts as met although the ray
/// passes beside them within its tolerance.
constexpr double MARGIN = 0x1p-40;

using DoubleLanes = Eigen::Array4d;

/// Where an entry is not behind the exit: bit i for lane i.
unsigned int bitsOf(const DoubleLanes& entries, const DoubleLanes& exits)
{
    const auto bit = [&](unsigned int lane)
    { return static_cast<unsigned int>(entries.coeff(lane) <= exits.coeff(lane)) << lane; };
    return bit(0) | bit(1) | bit(2) | bit(3);
}
} // namespace

CellSearch::CellSearch(const FlatElements& elements, const Ray& ray)
    : m_elements(elements),
      m_test(ray.getOrigin(), ray.getDirection(), elements.extent()),
      m_origin(ray.getOrigin().cast<double>()),
      m_firstOctant(0),
      m_distance(FARTHEST)
{
    const double extent =
        std::max(m_origin.cwiseAbs().maxCoeff(), static_cast<double>(elements.extent()));
    for (int axis = 0; axis < 3; ++axis)
    {
        const auto component = static_cast<double>(ray.getDirection()[axis]);
        m_inverse[axis] = component != 0.0 ? 1.0 / component : HUGE_INVERSE;
        m_margin[axis] = MARGIN * extent * std::abs(m_inverse[axis]);
        m_firstOctant |= component < 0.0 ? 1U << static_cast<unsigned int>(axis) : 0U;
    }
}

void CellSearch::note(std::uint32_t element, double distance)
{
    if (distance < m_distance || (distance == m_distance && element < m_found))
    {
        m_distance = distance;
        m_found = element;
    }
}

void CellSearch::search(const CellTree& tree)
{
    m_open.push_back({tree.topBox(), tree.cells().front(), -INFINITE});
    while (!m_open.empty())
    {
        const Visit visit = m_open.back();
        m_open.pop_back();
        if (visit.entry > m_distance)
        {
            continue;
        }
        if (visit.cell.firstChild == 0)
        {
            testTriangles(tree, visit.cell);
        }
        else
        {
            visitChildren(tree, visit);
        }
    }
}

void CellSearch::testTriangles(const CellTree& tree, const CellTree::Cell& leaf)
{
    const std::uint32_t* const entries = tree.entries().data() + leaf.firstEntry;
    for (std::uint32_t i = 0; i < leaf.entryCount; ++i)
    {
        m_elements.prefetchCorners(entries[i]);
    }
    for (std::uint32_t i = 0; i < leaf.entryCount; i += TriangleRayTest::LANES)
    {
        std::array<const Corners*, TriangleRayTest::LANES> triangles;
        for (std::uint32_t lane = 0; lane < triangles.size(); ++lane) // the last one fills up
        {
            const std::uint32_t entry = entries[std::min(i + lane, leaf.entryCount - 1)];
            triangles[lane] = &m_elements.corners(entry);
        }
        const unsigned int near = m_test.mayMeet(triangles);
        for (std::uint32_t lane = 0; near >> lane != 0; ++lane)
        {
            if (((near >> lane) & 1U) != 0 && i + lane < leaf.entryCount)
            {
                note(entries[i + lane], m_test.meets(*triangles[lane]));
            }
        }
    }
}

void CellSearch::visitChildren(const CellTree& tree, const Visit& visit)
{
    const CellTree::Cell* const children = &tree.cells()[visit.cell.firstChild];
    __builtin_prefetch(children);
    __builtin_prefetch(children + 4);
    const Planes planes = Octants::planesOf(visit.box.min, visit.box.max);
    const Halves x = halvesAlong<0>(planes);
    const Halves y = halvesAlong<1>(planes);
    const Halves z = halvesAlong<2>(planes);
    // The quarters of the cell, seen along z.
    const DoubleLanes xEntry(x.first.entry, x.second.entry, x.first.entry, x.second.entry);
    const DoubleLanes yEntry(y.first.entry, y.first.entry, y.second.entry, y.second.entry);
    const DoubleLanes xExit(x.first.exit, x.second.exit, x.first.exit, x.second.exit);
    const DoubleLanes yExit(y.first.exit, y.first.exit, y.second.exit, y.second.exit);
    const DoubleLanes entry = xEntry.max(yEntry).max(0.0);
    const DoubleLanes exit = xExit.min(yExit).min(m_distance);
    std::array<DoubleLanes, 2> entries = {entry.max(z.first.entry), entry.max(z.second.entry)};
    const std::array<DoubleLanes, 2> exits = {exit.min(z.first.exit), exit.min(z.second.exit)};
    // As bits, in the order in which the ray meets the octants.
    unsigned int crossed = bitsOf(entries[0], exits[0]) | bitsOf(entries[1], exits[1]) << 4U;
    crossed &= inOrder(visit.cell.occupied);
    while (crossed != 0)
    {
        const unsigned int last = highestBit(crossed); // what comes last is visited first
        crossed ^= 1U << last;
        const unsigned int octant = last ^ m_firstOctant;
        const CellTree::Cell& child = children[octant];
        __builtin_prefetch(tree.entries().data() + child.firstEntry);
        m_open.push_back({{Octants::minOf(planes, octant), Octants::maxOf(planes, octant)},
                          child,
                          entries[last / 4].coeff(last % 4)});
    }
}

/// Octants as bits, from their own order into that in which the ray meets them.
unsigned int CellSearch::inOrder(unsigned int octants) const
{
    if ((m_firstOctant & 1U) != 0)
    {
        octants = (octants & 0x55U) << 1U | (octants & 0xAAU) >> 1U;
    }
    if ((m_firstOctant & 2U) != 0)
    {
        octants = (octants & 0x33U) << 2U | (octants & 0xCCU) >> 2U;
    }
    if ((m_firstOctant & 4U) != 0)
    {
        octants = (octants & 0x0FU) << 4U | (octants & 0xF0U) >> 4U;
    }
    return octants;
}

/// Where the ray is in the halves of a cell along an axis, in the order in which it meets
/// them. A cell without extent is one half.
template <int Axis>
CellSearch::Halves CellSearch::halvesAlong(const Planes& planes) const
{
    const auto at = [&](const Eigen::Vector3f& plane)
    {
        const auto position = static_cast<double>(plane.coeff(Axis));
        return (position - m_origin.coeff(Axis)) * m_inverse.coeff(Axis);
    };
    const double margin = m_margin.coeff(Axis);
    const bool isForwards = m_inverse.coeff(Axis) > 0.0;
    const double centre = at(planes[1]);
    const Interval first = {at(planes[isForwards ? 0 : 2]) - margin, centre + margin};
    if (planes[0].coeff(Axis) == planes[2].coeff(Axis))
    {
        return {first, {INFINITE, INFINITE}};
    }
    return {first, {centre - margin, at(planes[isForwards ? 2 : 0]) + margin}};
}
} // namespace velmoran::scene
