#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#include <cstddef>
#include <vector>

namespace velmoran::scene
{
class CellTree;

/// A cell of an octree: an axis-aligned box with the elements that are stored in it and,
/// when it is divided, eight cells for its octants.
///
/// Octants: child `i` lies on the high side of the centre in x when bit 0 of `i` is set,
///     in y for bit 1 and in z for bit 2; on the low side otherwise. The centre's
///     planes belong to both sides.
/// Ownership: holds its children and shares the elements. The parent is a plain link,
///     which the parent clears when it goes before a child that someone holds. Cells
///     are released without recursion.
/// Threads: not locked. Reading from several threads at once is safe while nobody
///     writes.
class VELMORAN_SCENE_EXPORT OctreeNode
{
public:
    /// An empty cell from `min` to `max`. It is not added to `parent`, which is null for a
    /// root and must live as long as this cell.
    OctreeNode(OctreeNode* parent, const Eigen::Vector3f& min, const Eigen::Vector3f& max);

    virtual ~OctreeNode();

    OctreeNode(const OctreeNode&) = delete;
    OctreeNode& operator=(const OctreeNode&) = delete;

    const Eigen::Vector3f& getBVMin() const;
    const Eigen::Vector3f& getBVMax() const;

    /// The cell that this one is a part of; null for a root.
    OctreeNode* getParent() const;

    /// Child `index`; empty when there is none.
    OctreeNodePtr getChildAt(unsigned int index) const;

    /// 8, or 0 for a leaf.
    unsigned int getChildCount() const;

    /// The elements stored in this cell itself, in the order in which they came.
    const std::vector<IPrimitivePtr>& getPrimitives() const;

    /// The number of parents up to the root, which has depth 0. Linear in it.
    unsigned int getDepth() const;

    /// Makes the eight children, which meet in the centre (min + max) * 0.5. A cell that
    /// has children stays as it is. What it stores stays in it.
    void subDivide();

    /// Stores `primitives`, in this cell or sorted into cells below it.
    ///
    /// The cell appends them to its own list when that then has at most `maxPrimitives`
    /// entries, or when its depth is greater than `maxDepth`. Otherwise it is divided,
    /// each child gets those elements whose box test meets the child's box, in their
    /// order, and does the same with them. An element that meets several children goes
    /// into each, one that meets none is dropped. What the cell stored before stays there;
    /// empty handles are skipped. A negative limit is a limit: with `maxPrimitives` below
    /// 0 even cells without elements are divided, down to the depth.
    ///
    /// Where limits are too generous the tree stops growing by itself: a cell that has no
    /// smaller parts in float arithmetic, because its centre is one of its corners, keeps
    /// its elements; and cells are divided level by level until there are about 2^20 cells
    /// plus 8 for each element, or 2^23 stored handles plus 64 for each.
    ///
    /// Triangles are sorted by their positions at the time of the call, with the answers of
    /// `Triangle::intersects`; other kinds of elements are asked. Linear in the number of
    /// handles stored, times the depth.
    void calculate(int maxDepth, int maxPrimitives, std::vector<IPrimitivePtr> primitives);

    /// False, whatever the ray: cells are not searched. See `Octree::pickNearest`.
    bool intersectRay(const RayPtr& ray) const;

private:
    friend class Octree;
    struct Delivery;

    bool keeps(std::size_t incoming, int maxDepth, int maxPrimitives) const;
    void sortIntoNewCells(int maxDepth, int maxPrimitives, std::vector<IPrimitivePtr> primitives);
    void sortIntoChildren(std::vector<IPrimitivePtr> primitives,
                          std::vector<Delivery>& deliveries) const;
    void adopt(const CellTree& tree, std::vector<IPrimitivePtr> primitives);

    OctreeNode* m_parent; ///< not owned
    Eigen::Vector3f m_min;
    Eigen::Vector3f m_max;
    std::vector<IPrimitivePtr> m_primitives; ///< none empty
    std::vector<OctreeNodePtr> m_children;   ///< eight or none
};
} // namespace velmoran::scene
