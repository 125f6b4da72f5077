#include "scene/spatial/Octree.h"

#include "scene/geometry/IGeometry.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/IPrimitive.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeWalk.h"
#include "scene/spatial/CellTree.h"
#include "scene/spatial/FlatElements.h"
#include "scene/spatial/OctreeNode.h"
#include "scene/spatial/PickIndex.h"
#include "scene/spatial/PrefetchElement.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <numeric>

namespace velmoran::scene
{
namespace
{
/// The mesh that an instance uses; empty when it is no mesh.
MeshPtr meshOf(const InstanceGeometryPtr& instance)
{
    const IGeometryPtr geometry = instance ? instance->getGeometry() : IGeometryPtr();
    return geometry && geometry->getType() == IGeometry::MESH
               ? boost::dynamic_pointer_cast<Mesh>(geometry)
               : MeshPtr();
}

/// The faces of a mesh, their corners moved by `world`.
std::vector<IPrimitivePtr> placeFaces(const Mesh& mesh, const Eigen::Matrix4f& world)
{
    std::vector<IPrimitivePtr> faces;
    for (const IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
    {
        for (IPrimitivePtr& face : primitive->getPrimitives())
        {
            if (face)
            {
                face->applyTransform(world);
                faces.push_back(std::move(face));
            }
        }
    }
    return faces;
}

std::vector<IPrimitivePtr> inARow(const PickIndex::FaceLists& lists)
{
    std::size_t count = 0;
    for (const PickIndex::CollectedFaces& list : lists)
    {
        count += list.second.size();
    }
    std::vector<IPrimitivePtr> faces;
    faces.reserve(count);
    for (const PickIndex::CollectedFaces& list : lists)
    {
        const std::vector<IPrimitivePtr>& added = list.second;
        for (std::size_t i = 0; i < added.size(); ++i)
        {
            prefetchCount(added[std::min(i + FETCH_AHEAD, added.size() - 1)]);
            faces.push_back(added[i]);
        }
    }
    return faces;
}
} // namespace

Octree::Octree() : m_faces(boost::make_shared<std::vector<CollectedFaces>>()) {}

Octree::~Octree() = default;

void Octree::setSceneNode(const NodePtr& node)
{
    m_sceneNode = node;
    m_faces = boost::make_shared<std::vector<CollectedFaces>>(); // the index may hold the old list
    assembleScenePrimitives(node);
}

void Octree::assembleScenePrimitives(const NodePtr& node)
{
    if (!node)
    {
        return;
    }
    const std::vector<Eigen::Matrix4f> worlds = node->getCombinedTransformationsBelow();
    NodeWalk<const Node> walk(*node);
    for (std::size_t i = 0; const Node* const next = walk.next(); ++i)
    {
        for (const InstanceGeometryPtr& instance : next->getInstancedGeometries())
        {
            const MeshPtr mesh = meshOf(instance);
            if (mesh)
            {
                m_faces->emplace_back(mesh, placeFaces(*mesh, worlds[i]));
            }
        }
    }
}

void Octree::calculate(int maxDepth, int maxPrimitives)
{
    if (!m_sceneNode)
    {
        return;
    }
    std::vector<IPrimitivePtr> faces = inARow(*m_faces);
    FlatElements elements(faces);
    std::vector<std::uint32_t> all(elements.size());
    std::iota(all.begin(), all.end(), 0U);
    const CellLimits limits = {maxDepth, maxPrimitives};
    const TopCell top = {{m_sceneNode->getBVMin(), m_sceneNode->getBVMax()}, 0, 0};
    CellTree tree(elements, std::move(all), top, limits);
    m_root = boost::make_shared<OctreeNode>(nullptr, top.box.min, top.box.max);
    m_root->adopt(tree, std::move(faces));
    m_index = boost::make_shared<PickIndex>(m_faces, std::move(elements), std::move(tree), limits);
}

bool Octree::intersectRay(const RayPtr& ray) const
{
    return ray && m_root && m_root->intersectRay(ray);
}

OctreeNodePtr Octree::getRoot() const
{
    return m_root;
}

boost::optional<RayHit> Octree::pickNearest(const RayPtr& ray) const
{
    return ray && m_index ? m_index->nearest(ray) : boost::none;
}
} // namespace velmoran::scene
