#include "examples/scenetool/ScenePicker.h"

#include "examples/scenetool/StopWatch.h"
#include "scene/geometry/IGeometry.h"
#include "scene/geometry/IPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/OctreeNode.h"
#include "scene/spatial/Ray.h"

#include <boost/make_shared.hpp>

namespace velmoran::examples
{
namespace
{
constexpr int MAX_DEPTH = 8;
constexpr int MAX_TRIANGLES = 32; ///< of a cell that is not divided

std::vector<Eigen::Vector3d> getCorners(const scene::IPrimitive& face)
{
    std::vector<Eigen::Vector3d> corners;
    for (const scene::VertexPtr& vertex : face.getVertexArray())
    {
        const core::utils::Vector<float, 3> position = vertex->getPositionVector();
        corners.emplace_back(position[0], position[1], position[2]);
    }
    return corners;
}
} // namespace

ScenePicker::ScenePicker(const scene::SceneManagerPtr& scene)
    : m_octree(boost::make_shared<scene::Octree>())
{
    const scene::SceneLock lock(scene);
    const StopWatch watch;
    m_octree->setSceneNode(scene->getRoot());
    m_octree->calculate(MAX_DEPTH, MAX_TRIANGLES);
    m_buildSeconds = watch.getSeconds();
}

boost::optional<Pick> ScenePicker::pick(const Eigen::Vector3d& origin,
                                        const Eigen::Vector3d& direction) const
{
    // Directions of any length are fine, also those that floats don't hold.
    const Eigen::Vector3d unit = direction.stableNormalized();
    const boost::optional<scene::RayHit> hit = m_octree->pickNearest(
        boost::make_shared<scene::Ray>(origin.cast<float>(), unit.cast<float>()));
    if (!hit)
    {
        return boost::none;
    }
    Pick pick;
    pick.geometryID = hit->geometry->getID();
    pick.distance = hit->distance;
    pick.point = origin + pick.distance * unit;
    pick.corners = getCorners(*hit->element);
    return pick;
}

std::size_t ScenePicker::countCells() const
{
    std::size_t count = 0;
    std::vector<scene::OctreeNodePtr> pending = {m_octree->getRoot()};
    while (!pending.empty())
    {
        const scene::OctreeNodePtr cell = pending.back();
        pending.pop_back();
        ++count;
        for (unsigned int i = 0; i < cell->getChildCount(); ++i)
        {
            pending.push_back(cell->getChildAt(i));
        }
    }
    return count;
}
} // namespace velmoran::examples
