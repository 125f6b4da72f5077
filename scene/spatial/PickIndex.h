#pragma once

#include "scene/Forward.h"
#include "scene/spatial/CellTree.h"
#include "scene/spatial/FlatElements.h"
#include "scene/spatial/RayHit.h"

#include <boost/optional.hpp>
#include <boost/shared_ptr.hpp>

#include <utility>
#include <vector>

namespace velmoran::scene
{
class CellSearch;

/// Finds the nearest of an octree's elements: a snapshot, read by any number of threads.
class PickIndex
{
public:
    using CollectedFaces = std::pair<IGeometryPtr, std::vector<IPrimitivePtr>>;
    using FaceLists = std::vector<CollectedFaces>;

    /// `elements` are those of `faces` in a row, as far as they went at the time; lists may
    /// be appended to `faces` later. `tree` sorted them into the octree's cells.
    PickIndex(const boost::shared_ptr<const FaceLists>& faces, FlatElements elements, CellTree tree,
              const CellLimits& limits);

    /// See `Octree::pickNearest`; the handle is not empty.
    boost::optional<RayHit> nearest(const RayPtr& ray) const;

private:
    void askOthers(const RayPtr& ray, CellSearch& search) const;

    boost::shared_ptr<const FaceLists> m_faces;
    std::vector<std::uint32_t> m_starts; ///< number of the first element of each list
    FlatElements m_elements;
    CellTree m_tree;
    CellTree m_outerTree; ///< of the triangles that reach out of that tree's top
};
} // namespace velmoran::scene
