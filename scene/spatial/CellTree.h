#pragma once

#include "scene/spatial/FlatElements.h"

#include <Eigen/Core>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoran::scene
{
/// When cells keep what they get; see `OctreeNode::calculate`.
struct CellLimits
{
    int maxDepth;
    int maxPrimitives;
};

struct CellBox
{
    Eigen::Vector3f min;
    Eigen::Vector3f max;
};

/// The cell that a `CellTree` starts from.
struct TopCell
{
    CellBox box;
    std::size_t depth;  ///< below its own root
    std::size_t stored; ///< elements that it holds already
};

/// The cells of an octree as flat lists: which elements go where.
class CellTree
{
public:
    /// Its box follows from that of the top.
    struct Cell
    {
        std::uint32_t firstChild; ///< the other seven follow; 0 for a leaf
        std::uint32_t occupied;   ///< children that got elements: bit i for child i
        std::uint32_t firstEntry; ///< of a leaf, in the list of entries
        std::uint32_t entryCount;
    };

    /// Sorts those elements whose numbers are `incoming` into `top` and cells below it.
    CellTree(const FlatElements& elements, std::vector<std::uint32_t> incoming, const TopCell& top,
             const CellLimits& limits);

    const CellBox& topBox() const { return m_topBox; }

    /// The cells level by level; the first one is the top.
    const std::vector<Cell>& cells() const { return m_cells; }

    /// Numbers of elements, leaf by leaf.
    const std::vector<std::uint32_t>& entries() const { return m_entries; }

private:
    CellBox m_topBox;
    std::vector<Cell> m_cells;
    std::vector<std::uint32_t> m_entries;
};
} // namespace velmoran::scene
