#include "scene/spatial/PickIndex.h"

#include "scene/geometry/IPrimitive.h"
#include "scene/geometry/Polygon.h"
#include "scene/geometry/TriangleBoxTest.h"
#include "scene/geometry/Vertex.h"
#include "scene/spatial/CellSearch.h"
#include "scene/spatial/Ray.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <typeinfo>

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3f;

constexpr int WORTHWHILE_TRIANGLES = 8; ///< to test in one cell

/// The triangles that are not within the top cell, in cells around them.
CellTree sortOuter(const FlatElements& elements, const CellBox& inner, const CellLimits& limits)
{
    std::vector<std::uint32_t> outer;
    TopCell top = {inner, 0, 0};
    // What is no box in float arithmetic can't be divided, and encloses nothing then.
    const bool isEnclosing =
        isBox(inner.min, inner.max) && Vector3f(inner.min + inner.max).allFinite();
    for (std::uint32_t i = 0; i < elements.size(); ++i)
    {
        if (elements.kind(i) != FlatElements::TRIANGLE)
        {
            continue;
        }
        const FlatElements::Bounds& bounds = elements.bounds(i);
        if (!isEnclosing || !(bounds.min.array() >= inner.min.array()).all() ||
            !(bounds.max.array() <= inner.max.array()).all())
        {
            CellBox& box = top.box;
            box.min = outer.empty() ? bounds.min : Vector3f(box.min.cwiseMin(bounds.min));
            box.max = outer.empty() ? bounds.max : Vector3f(box.max.cwiseMax(bounds.max));
            outer.push_back(i);
        }
    }
    // Nobody sees these cells: those of few triangles are not worth their memory. Without a
    // centre in float arithmetic there are no parts: one cell for all.
    const bool hasCentre = Vector3f(top.box.min + top.box.max).allFinite();
    const int mostTriangles = hasCentre ? std::max(limits.maxPrimitives, WORTHWHILE_TRIANGLES)
                                        : std::numeric_limits<int>::max();
    return CellTree(elements, std::move(outer), top, {limits.maxDepth, mostTriangles});
}

/// Where the ray meets the plane of an element, in multiples of its direction.
boost::optional<double> meetsPlane(const Ray& ray, const IPrimitive& element)
{
    const std::vector<VertexPtr> corners = element.getVertexArray();
    if (corners.empty() || !corners[0])
    {
        return boost::none;
    }
    const core::utils::Vector<float, 3> corner = corners[0]->getPositionVector();
    const Eigen::Vector3d normal = element.getFaceNormal().cast<double>();
    const Eigen::Vector3d offset =
        (Vector3f(corner[0], corner[1], corner[2]) - ray.getOrigin()).cast<double>();
    const double distance = normal.dot(offset) / normal.dot(ray.getDirection().cast<double>());
    return boost::make_optional(distance >= 0.0 && std::isfinite(distance), distance);
}
} // namespace

PickIndex::PickIndex(const boost::shared_ptr<const FaceLists>& faces, FlatElements elements,
                     CellTree tree, const CellLimits& limits)
    : m_faces(faces),
      m_elements(std::move(elements)),
      m_tree(std::move(tree)),
      m_outerTree(sortOuter(m_elements, m_tree.topBox(), limits))
{
    std::uint32_t start = 0;
    for (const CollectedFaces& list : *m_faces)
    {
        m_starts.push_back(start);
        start += static_cast<std::uint32_t>(list.second.size());
    }
}

boost::optional<RayHit> PickIndex::nearest(const RayPtr& ray) const
{
    CellSearch search(m_elements, *ray);
    if (!search.isUsable())
    {
        return boost::none;
    }
    search.search(m_tree);
    search.search(m_outerTree);
    askOthers(ray, search);
    if (!search.hasFound())
    {
        return boost::none;
    }
    const auto next = std::upper_bound(m_starts.begin(), m_starts.end(), search.found());
    const CollectedFaces& list = (*m_faces)[static_cast<std::size_t>(next - m_starts.begin()) - 1];
    const double length = ray->getDirection().cast<double>().norm();
    RayHit hit;
    hit.element = list.second[search.found() - *(next - 1)];
    hit.distance = static_cast<float>(search.distance() * length);
    hit.geometry = list.first;
    return hit;
}

void PickIndex::askOthers(const RayPtr& ray, CellSearch& search) const
{
    for (const FlatElements::Other& other : m_elements.others())
    {
        const IPrimitive& element = *other.second;
        // A plain polygon would write each time that it can't tell.
        if (typeid(element) == typeid(Polygon) || !element.intersects(ray))
        {
            continue;
        }
        const boost::optional<double> distance = meetsPlane(*ray, element);
        if (distance)
        {
            search.note(other.first, *distance);
        }
    }
}
} // namespace velmoran::scene
