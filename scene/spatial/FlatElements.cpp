#include "scene/spatial/FlatElements.h"

#include "scene/geometry/Triangle.h"
#include "scene/spatial/PrefetchElement.h"

#include <algorithm>
#include <limits>
#include <typeinfo>

namespace velmoran::scene
{
namespace
{
const Eigen::Vector3f ZERO = Eigen::Vector3f::Zero();
const Eigen::Vector3f NONE = Eigen::Vector3f::Constant(std::numeric_limits<float>::quiet_NaN());
} // namespace

FlatElements::FlatElements(const std::vector<IPrimitivePtr>& elements)
    : m_kinds(elements.size(), OTHER),
      m_corners(elements.size(), {ZERO, ZERO, ZERO}),
      m_bounds(elements.size(), {NONE, NONE})
{
    Eigen::Vector3f extent = ZERO;
    for (std::uint32_t i = 0; i < elements.size(); ++i)
    {
        if (i + FETCH_AHEAD < elements.size())
        {
            prefetchPositions(elements[i + FETCH_AHEAD]);
        }
        const IPrimitive& element = *elements[i];
        if (typeid(element) != typeid(Triangle)) // a class derived from it may answer otherwise
        {
            m_others.emplace_back(i, &element);
            continue;
        }
        const Corners& corners = static_cast<const Triangle&>(element).getPositions();
        m_kinds[i] = NEVER_MET;
        if (hasArea(corners))
        {
            m_kinds[i] = TRIANGLE;
            m_corners[i] = corners;
            m_bounds[i] = {corners[0].cwiseMin(corners[1]).cwiseMin(corners[2]),
                           corners[0].cwiseMax(corners[1]).cwiseMax(corners[2])};
            extent = extent.cwiseMax(m_bounds[i].max).cwiseMax(-m_bounds[i].min);
        }
    }
    m_extent = extent.maxCoeff();
}

const IPrimitive& FlatElements::other(std::uint32_t element) const
{
    return *std::lower_bound(m_others.begin(), m_others.end(), Other(element, nullptr))->second;
}
} // namespace velmoran::scene
