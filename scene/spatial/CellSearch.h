#pragma once

#include "scene/geometry/TriangleBoxTest.h"
#include "scene/geometry/TriangleRayTest.h"
#include "scene/spatial/CellTree.h"
#include "scene/spatial/FlatElements.h"

#include <Eigen/Core>
#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

namespace velmoran::scene
{
class Ray;

/// One ray's way through trees of cells, to the nearest triangle.
///
/// Cells are visited front to back; those that begin behind the nearest triangle so far are
/// passed over. Distances are multiples of the ray's direction.
class CellSearch
{
public:
    CellSearch(const FlatElements& elements, const Ray& ray);

    /// See `TriangleRayTest`.
    bool isUsable() const { return m_test.isUsable(); }

    /// Looks for nearer triangles in `tree`, one of the same elements. The ray is usable.
    void search(const CellTree& tree);

    /// Notes that the ray meets an element, unless the distance is infinite. Of elements at the
    /// same distance the one with the lowest number stays.
    void note(std::uint32_t element, double distance);

    bool hasFound() const { return m_found != NONE; }
    std::uint32_t found() const { return m_found; }
    double distance() const { return m_distance; }

private:
    static constexpr std::uint32_t NONE = std::numeric_limits<std::uint32_t>::max();

    struct Visit
    {
        CellBox box;
        CellTree::Cell cell;
        double entry; ///< where the ray enters it
    };

    /// Where the ray is between two planes of an axis.
    struct Interval
    {
        double entry;
        double exit;
    };

    struct Halves
    {
        Interval first;
        Interval second;
    };

    void testTriangles(const CellTree& tree, const CellTree::Cell& leaf);
    void visitChildren(const CellTree& tree, const Visit& visit);

    unsigned int inOrder(unsigned int octants) const;

    template <int Axis>
    Halves halvesAlong(const Planes& planes) const;

    const FlatElements& m_elements;
    TriangleRayTest m_test;
    Eigen::Vector3d m_origin;
    Eigen::Vector3d m_inverse;  ///< of the direction's components; huge for 0
    Eigen::Vector3d m_margin;   ///< of intervals, for rounding errors
    unsigned int m_firstOctant; ///< the one of a cell that the ray can enter first
    double m_distance;
    std::uint32_t m_found = NONE;
    boost::container::small_vector<Visit, 128> m_open; ///< nearest last
};
} // namespace velmoran::scene
