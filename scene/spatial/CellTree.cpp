#include "scene/spatial/CellTree.h"

#include "scene/spatial/Octants.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velmoran::scene
{
namespace
{
using Cell = CellTree::Cell;

constexpr std::uint32_t AHEAD = 16; ///< elements between the one asked for and the one read

/// Of a byte that is not 0.
unsigned int lowestBit(unsigned int byte)
{
    return static_cast<unsigned int>(__builtin_ctz(byte));
}

/// Divides cells level by level, so that a tree that must stop growing is as deep everywhere.
class CellDivision
{
public:
    CellDivision(const FlatElements& elements, std::vector<std::uint32_t> incoming,
                 const CellLimits& limits)
        : m_elements(elements),
          m_incoming(std::move(incoming)),
          m_limits(limits),
          m_mostCells((std::size_t(1) << 20U) + 8 * m_incoming.size()),
          m_mostEntries((std::size_t(1) << 23U) + 64 * m_incoming.size())
    {
    }

    void run(const TopCell& top)
    {
        m_cells.push_back({0, static_cast<std::uint32_t>(m_incoming.size()), 0});
        m_boxes.push_back(top.box);
        m_stored = top.stored;
        std::size_t first = 0;
        for (std::size_t depth = top.depth; first < m_cells.size(); ++depth)
        {
            const bool isTooDeep =
                static_cast<std::int64_t>(depth) > static_cast<std::int64_t>(m_limits.maxDepth);
            const std::size_t end = m_cells.size();
            for (; first < end; ++first)
            {
                settle(first, isTooDeep);
            }
            m_incoming.swap(m_outgoing);
            m_outgoing.clear();
            m_stored = 0;
        }
    }

    std::vector<Cell> takeCells() { return std::move(m_cells); }
    std::vector<std::uint32_t> takeEntries() { return std::move(m_entries); }

private:
    /// Divides a cell, or lets it keep its elements.
    void settle(std::size_t index, bool isTooDeep)
    {
        Cell& cell = m_cells[index];
        const auto entries = static_cast<std::int64_t>(cell.entryCount + m_stored);
        const Octants octants(m_boxes[index].min, m_boxes[index].max);
        if (entries <= m_limits.maxPrimitives || isTooDeep || octants.areAsLargeAsTheCell() ||
            m_cells.size() >= m_mostCells || m_entries.size() + m_outgoing.size() >= m_mostEntries)
        {
            const auto first = m_incoming.begin() + static_cast<std::ptrdiff_t>(cell.firstEntry);
            cell.firstEntry = m_entries.size();
            m_entries.insert(m_entries.end(), first, first + cell.entryCount);
            return;
        }
        const std::size_t firstIncoming = cell.firstEntry;
        const std::uint32_t count = cell.entryCount;
        cell.firstChild = static_cast<std::uint32_t>(m_cells.size());
        cell.entryCount = 0;
        distribute(octants, m_incoming.data() + firstIncoming, count, index == 0);
    }

    /// Makes the parts of a cell and hands its elements on.
    void distribute(const Octants& octants, const std::uint32_t* incoming, std::uint32_t count,
                    bool isTop)
    {
        std::array<std::uint32_t, 8> counts{};
        m_met.resize(count);
        for (std::uint32_t i = 0; i < count; ++i)
        {
            m_elements.prefetchBounds(incoming[std::min(i + AHEAD, count - 1)]);
            const unsigned int met = isTop ? octants.metBy(m_elements, incoming[i])
                                           : octants.metWithin(m_elements, incoming[i]);
            m_met[i] = static_cast<std::uint8_t>(met);
            for (unsigned int rest = met; rest != 0; rest &= rest - 1)
            {
                ++counts[lowestBit(rest)];
            }
        }
        std::array<std::size_t, 8> places{};
        std::size_t place = m_outgoing.size();
        for (unsigned int octant = 0; octant < counts.size(); ++octant)
        {
            m_cells.push_back({0, counts[octant], place});
            m_boxes.push_back({octants.min(octant), octants.max(octant)});
            places[octant] = place;
            place += counts[octant];
        }
        m_outgoing.resize(place);
        for (std::uint32_t i = 0; i < count; ++i)
        {
            for (unsigned int rest = m_met[i]; rest != 0; rest &= rest - 1)
            {
                m_outgoing[places[lowestBit(rest)]++] = incoming[i];
            }
        }
    }

    const FlatElements& m_elements;
    std::vector<std::uint32_t> m_incoming; ///< of the cells of this level
    std::vector<std::uint32_t> m_outgoing; ///< of the cells of the next one
    std::vector<std::uint8_t> m_met;       ///< octants of each element of the cell
    std::vector<Cell> m_cells;             ///< entries of those not settled are incoming ones
    std::vector<CellBox> m_boxes;          ///< of the cells
    std::vector<std::uint32_t> m_entries;
    CellLimits m_limits;
    std::size_t m_mostCells;
    std::size_t m_mostEntries;
    std::size_t m_stored = 0; ///< in the cell itself: only in the top
};
} // namespace

CellTree::CellTree(const FlatElements& elements, std::vector<std::uint32_t> incoming,
                   const TopCell& top, const CellLimits& limits)
    : m_topBox(top.box)
{
    CellDivision division(elements, std::move(incoming), limits);
    division.run(top);
    m_cells = division.takeCells();
    m_entries = division.takeEntries();
}
} // namespace velmoran::scene
