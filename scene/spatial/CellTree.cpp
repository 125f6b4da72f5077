#include "scene/spatial/CellTree.h"

#include "scene/spatial/Bits.h"
#include "scene/spatial/Octants.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace velmoran::scene
{
namespace
{
using Cell = CellTree::Cell;

constexpr std::uint32_t BOUNDS_AHEAD = 16; ///< elements

/// Divides cells level by level, so that a tree that must stop growing is as deep everywhere.
class CellDivision
{
public:
    CellDivision(const FlatElements& elements, std::vector<std::uint32_t> incoming,
                 const CellLimits& limits)
        : m_elements(elements),
          m_limits(limits),
          m_mostCells(atMost((std::size_t(1) << 20U) + 8 * incoming.size(), 8)),
          m_mostEntries(
              atMost((std::size_t(1) << 23U) + 64 * incoming.size(), 8 * incoming.size())),
          m_incoming(std::move(incoming))
    {
    }

    void run(const TopCell& top)
    {
        m_cells.push_back({0, 0, 0, static_cast<std::uint32_t>(m_incoming.size())});
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
    /// `wanted`, or what 32 bits can number when dividing one more cell adds `step`. Half of
    /// that, as a level that stops growing keeps as many again.
    static std::size_t atMost(std::size_t wanted, std::size_t step)
    {
        constexpr std::size_t NUMBERS = std::numeric_limits<std::uint32_t>::max() / 2;
        return step < NUMBERS ? std::min(wanted, NUMBERS - step) : 0;
    }

    /// Divides a cell, or lets it keep its elements.
    void settle(std::size_t index, bool isTooDeep)
    {
        const Cell cell = m_cells[index];
        const auto entries = static_cast<std::int64_t>(cell.entryCount + m_stored);
        const bool isLarge =
            m_cells.size() >= m_mostCells || m_entries.size() + m_outgoing.size() >= m_mostEntries;
        const std::uint32_t* const incoming = m_incoming.data() + cell.firstEntry;
        if (entries > m_limits.maxPrimitives && !isTooDeep && !isLarge)
        {
            const Octants octants(m_boxes[index].min, m_boxes[index].max);
            if (!octants.areAsLargeAsTheCell())
            {
                findOctants(octants, incoming, cell.entryCount, index == 0);
                divide(index, octants, incoming, cell.entryCount);
                return;
            }
        }
        m_cells[index].firstEntry = static_cast<std::uint32_t>(m_entries.size());
        m_entries.insert(m_entries.end(), incoming, incoming + cell.entryCount);
    }

    /// Which parts of a cell its elements meet, one by one and in numbers.
    void findOctants(const Octants& octants, const std::uint32_t* incoming, std::uint32_t count,
                     bool isTop)
    {
        m_met.resize(count);
        m_counts.fill(0);
        for (std::uint32_t i = 0; i < count; ++i)
        {
            m_elements.prefetchBounds(incoming[std::min(i + BOUNDS_AHEAD, count - 1)]);
            const unsigned int met = isTop ? octants.metBy(m_elements, incoming[i])
                                           : octants.metWithin(m_elements, incoming[i]);
            m_met[i] = static_cast<std::uint8_t>(met);
            for (unsigned int rest = met; rest != 0; rest &= rest - 1)
            {
                ++m_counts[lowestBit(rest)];
            }
        }
    }

    /// Makes the parts of a cell and hands its elements on to them.
    void divide(std::size_t index, const Octants& octants, const std::uint32_t* incoming,
                std::uint32_t count)
    {
        m_cells[index] = {static_cast<std::uint32_t>(m_cells.size()), 0, 0, 0};
        std::array<std::uint32_t, 8> places{};
        auto place = static_cast<std::uint32_t>(m_outgoing.size());
        for (unsigned int octant = 0; octant < places.size(); ++octant)
        {
            m_cells[index].occupied |= (m_counts[octant] != 0 ? 1U : 0U) << octant;
            m_cells.push_back({0, 0, place, m_counts[octant]});
            m_boxes.push_back({octants.min(octant), octants.max(octant)});
            places[octant] = place;
            place += m_counts[octant];
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
    CellLimits m_limits;
    std::size_t m_mostCells;
    std::size_t m_mostEntries;
    std::vector<std::uint32_t> m_incoming;   ///< of the cells of this level
    std::vector<std::uint32_t> m_outgoing;   ///< of the cells of the next one
    std::vector<std::uint8_t> m_met;         ///< octants, of each element of the cell
    std::array<std::uint32_t, 8> m_counts{}; ///< elements, of each octant of the cell
    std::vector<Cell> m_cells;               ///< the first entries of those to come are incoming
    std::vector<CellBox> m_boxes;            ///< of the cells
    std::vector<std::uint32_t> m_entries;
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
