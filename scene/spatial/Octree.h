#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/spatial/RayHit.h"

#include <boost/optional.hpp>
#include <boost/shared_ptr.hpp>

#include <utility>
#include <vector>

namespace velmoran::scene
{
class PickIndex;

/// Sorts the faces below a scene node into cells, so that a picking ray tests few of them.
///
/// Snapshot: faces are collected in world space by `setSceneNode` and sorted by
///     `calculate`. What moves, is edited, added or removed afterwards is seen when both
///     are called again.
/// Ownership: holds the scene node and the geometries that faces were collected from. The
///     faces are this octree's own: changing them changes no mesh.
/// Threads: not locked. Any number of threads may ask while nobody collects or calculates.
///     Collecting and calculating read the scene, so they hold the scene lock.
class VELMORAN_SCENE_EXPORT Octree
{
public:
    /// An octree without scene node, faces and cells.
    Octree();

    virtual ~Octree();

    Octree(const Octree&) = delete;
    Octree& operator=(const Octree&) = delete;

    /// Sets the node that is covered, normally the scene's root, forgets all collected faces
    /// and collects those below `node`. The cells stay until `calculate`. With an empty
    /// handle nothing is covered.
    void setSceneNode(const NodePtr& node);

    /// Collects the faces of `node` and the nodes below it, besides those that are collected
    /// already. An empty handle is ignored.
    ///
    /// Counts are the geometry instances of type `MESH`, those of controllers not included;
    /// each instance gets faces of its own, transformed by the node's world matrix. A node
    /// is met before its children, children in order, one that several parents list once.
    /// Faces that can't be read are left out. Linear in nodes and faces.
    void assembleScenePrimitives(const NodePtr& node);

    /// Sorts the collected faces into a new root cell, see `OctreeNode::calculate`; it
    /// reaches from the scene node's `getBVMin` to its `getBVMax`. Does nothing when no
    /// scene node is set.
    ///
    /// A cell with more than `maxPrimitives` faces is divided, down to cells of the depth
    /// `maxDepth` + 1; the root has depth 0. A negative `maxDepth` leaves all faces in the root.
    /// With a negative `maxPrimitives` even empty cells are divided, down to the depth.
    ///
    /// Those bounds need not enclose the scene when nodes are rotated. Faces that lie outside
    /// are in no cell below a divided root, but `pickNearest` finds them.
    void calculate(int maxDepth, int maxPrimitives);

    /// False, whatever the ray. See `pickNearest`.
    bool intersectRay(const RayPtr& ray) const;

    /// The root cell; empty before `calculate`.
    OctreeNodePtr getRoot() const;

    /// The nearest face that `ray` meets, among all that `calculate` had. Empty when there
    /// are no cells, the ray is empty or meets none.
    ///
    /// The ray test is that of `Triangle::intersects`; of faces at the same distance the one
    /// that was collected first is the nearest. Polygons are not met. Another kind of
    /// element is asked whether the ray meets it, for every ray; its distance is that to the
    /// plane through its first corner along its face normal.
    ///
    /// Cells are searched front to back. Faces that reach out of the root cell are kept in
    /// cells of their own, with the same limits, around all of them. Cost: the cells along
    /// the ray up to the hit, plus the elements of other kinds.
    boost::optional<RayHit> pickNearest(const RayPtr& ray) const;

private:
    using CollectedFaces = std::pair<IGeometryPtr, std::vector<IPrimitivePtr>>;

    NodePtr m_sceneNode;
    boost::shared_ptr<std::vector<CollectedFaces>> m_faces; ///< shared with the index
    OctreeNodePtr m_root;
    boost::shared_ptr<const PickIndex> m_index; ///< made with the root
};
} // namespace velmoran::scene
