// Bounds of nodes.

#include "scene/geometry/IGeometry.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeWalk.h"

#include <boost/optional.hpp>

#include <cstddef>

namespace velmoran::scene
{
namespace
{
/// What tells the maximum from the minimum.
struct Extreme
{
    Eigen::Vector3f (IGeometry::*ofGeometry)();
    Eigen::Vector3f (*choose)(const Eigen::Vector3f&, const Eigen::Vector3f&);

    void combine(const Eigen::Vector3f& corner, boost::optional<Eigen::Vector3f>& bound) const
    {
        bound = bound ? choose(*bound, corner) : corner;
    }
};

/// The corner of a node's own geometries, in the node's space; none without geometry.
boost::optional<Eigen::Vector3f> ownCorner(const Node& node, const Extreme& extreme)
{
    boost::optional<Eigen::Vector3f> corner;
    for (const InstanceGeometryPtr& instance : node.getAllInstancedGeometries())
    {
        const IGeometryPtr geometry = instance ? instance->getGeometry() : IGeometryPtr();
        if (geometry)
        {
            extreme.combine((geometry.get()->*extreme.ofGeometry)(), corner);
        }
    }
    return corner;
}

Eigen::Vector3f boundBelow(const Node& top, const Extreme& extreme)
{
    const std::vector<Eigen::Matrix4f> worlds = top.getCombinedTransformationsBelow();
    boost::optional<Eigen::Vector3f> bound;
    NodeWalk<const Node> walk(top);
    for (std::size_t i = 0; const Node* const node = walk.next(); ++i)
    {
        const boost::optional<Eigen::Vector3f> corner = ownCorner(*node, extreme);
        if (corner)
        {
            extreme.combine((worlds[i] * corner->homogeneous()).head<3>(), bound);
        }
    }
    return bound.value_or(Eigen::Vector3f::Zero());
}
} // namespace

Eigen::Vector3f Node::getBVMax() const
{
    return boundBelow(*this,
                      {&IGeometry::getBVMax, [](const Eigen::Vector3f& a, const Eigen::Vector3f& b)
                       { return Eigen::Vector3f(a.cwiseMax(b)); }});
}

Eigen::Vector3f Node::getBVMin() const
{
    return boundBelow(*this,
                      {&IGeometry::getBVMin, [](const Eigen::Vector3f& a, const Eigen::Vector3f& b)
                       { return Eigen::Vector3f(a.cwiseMin(b)); }});
}

Eigen::Vector3f Node::getBVCenter() const
{
    return (getBVMax() + getBVMin()) * 0.5F;
}
} // namespace velmoran::scene
