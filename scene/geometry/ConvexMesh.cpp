#include "scene/geometry/ConvexMesh.h"

namespace velmoran::scene
{
ConvexMesh::ConvexMesh(std::string id, std::string name) : Mesh(std::move(id), std::move(name))
{
    setType(CONVEX_MESH);
}

ConvexMesh::~ConvexMesh() = default;

void ConvexMesh::setConvexHullOf(const IGeometryPtr& geometry)
{
    const IGeometry* linked = geometry.get();
    while (linked != nullptr && linked != this)
    {
        const auto* const hull = dynamic_cast<const ConvexMesh*>(linked);
        linked = hull != nullptr ? hull->m_convexHullOf.get() : nullptr;
    }
    if (geometry && linked != this)
    {
        m_convexHullOf = geometry;
    }
}

const IGeometryPtr& ConvexMesh::getConvexHullOf() const
{
    return m_convexHullOf;
}

IGeometryPtr ConvexMesh::clone() const
{
    return Mesh::clone();
}

Eigen::Vector3f ConvexMesh::getBVCenter()
{
    return m_convexHullOf ? m_convexHullOf->getBVCenter() : Mesh::getBVCenter();
}

Eigen::Vector3f ConvexMesh::getBVMin()
{
    return m_convexHullOf ? m_convexHullOf->getBVMin() : Mesh::getBVMin();
}

Eigen::Vector3f ConvexMesh::getBVMax()
{
    return m_convexHullOf ? m_convexHullOf->getBVMax() : Mesh::getBVMax();
}
} // namespace velmoran::scene
