#include "scene/spatial/CellSearch.h"

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

/// Stands for 1/0: beyond every distance, but 0 times it is 0.
constexpr double HUGE_INVERSE = 1e200;

/// Around cells, in extents of the scene: far above the errors of the ray test and of the
/// intervals, far below what costs time.
constexpr double MARGIN = 0x1p-40;

constexpr std::uint32_t FETCH_AHEAD = 4; ///< triangles
} // namespace

CellSearch::CellSearch(const FlatElements& elements, const Ray& ray)
    : m_elements(elements),
      m_test(ray.getOrigin(), ray.getDirection(), elements.extent()),
      m_origin(ray.getOrigin().cast<double>()),
      m_firstOctant(0),
      m_distance(INFINITE)
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
    m_open.push_back({tree.topBox(), 0, -INFINITE});
    while (!m_open.empty())
    {
        const Visit visit = m_open.back();
        m_open.pop_back();
        if (visit.entry > m_distance)
        {
            continue;
        }
        const CellTree::Cell& cell = tree.cells()[visit.cell];
        if (cell.firstChild == 0)
        {
            testTriangles(tree, cell);
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
        m_elements.prefetchCorners(entries[std::min(i + FETCH_AHEAD, leaf.entryCount - 1)]);
        const boost::optional<double> distance = m_test.meets(m_elements.corners(entries[i]));
        if (distance)
        {
            note(entries[i], *distance);
        }
    }
}

void CellSearch::visitChildren(const CellTree& tree, const Visit& visit)
{
    const Octants octants(visit.box.min, visit.box.max);
    const std::uint32_t firstChild = tree.cells()[visit.cell].firstChild;
    const CellTree::Cell* const children = &tree.cells()[firstChild];
    const std::array<Interval, 2> x = halvesAlong(0, octants.planes());
    const std::array<Interval, 2> y = halvesAlong(1, octants.planes());
    const std::array<Interval, 2> z = halvesAlong(2, octants.planes());
    const unsigned int repeated = octants.repeated();
    for (unsigned int i = 8; i-- > 0;) // the last one is to be visited first
    {
        const unsigned int octant = i ^ m_firstOctant;
        const CellTree::Cell& child = children[octant];
        const Interval& alongX = x[i & 1U];
        const Interval& alongY = y[(i >> 1U) & 1U];
        const Interval& alongZ = z[i >> 2U];
        const double entry = std::max({alongX.entry, alongY.entry, alongZ.entry, 0.0});
        const double exit = std::min({alongX.exit, alongY.exit, alongZ.exit, m_distance});
        const bool isEmpty = child.firstChild == 0 && child.entryCount == 0;
        if (entry <= exit && !isEmpty && (octant & repeated) == 0)
        {
            m_open.push_back(
                {{octants.min(octant), octants.max(octant)}, firstChild + octant, entry});
        }
    }
}

/// Where the ray is in the half of a cell that it meets first along an axis, and in the other.
std::array<CellSearch::Interval, 2> CellSearch::halvesAlong(int axis, const Planes& planes) const
{
    const auto at = [&](std::size_t plane)
    {
        const auto position = static_cast<double>(planes[plane].coeff(axis));
        return (position - m_origin.coeff(axis)) * m_inverse.coeff(axis);
    };
    const double margin = m_margin.coeff(axis);
    const bool isForwards = m_inverse.coeff(axis) > 0.0;
    const double centre = at(1);
    return {Interval{at(isForwards ? 0 : 2) - margin, centre + margin},
            Interval{centre - margin, at(isForwards ? 2 : 0) + margin}};
}
} // namespace velmoran::scene
