#pragma once

#include <cstddef>
#include <vector>

namespace velmoran::scene
{
/// Tells which edges of many triangles are the same.
///
/// Half-edge h = 3 * t + k leads from corner k of triangle t to the next one, corner 2 to
///     corner 0. Half-edges that join the same two corner numbers, in whatever direction,
///     are one edge.
class EdgeTable
{
public:
    /// `corners`: the numbers, below `numbers`, of the corners of `triangles` triangles. Linear
    /// in corners and numbers: those of one number never make a search longer.
    EdgeTable(const std::vector<unsigned int>& corners, std::size_t triangles, std::size_t numbers);

    /// The first half-edge of the edge that `half` belongs to.
    std::size_t getFirst(std::size_t half) const { return m_first[half]; }

    std::size_t countHalves() const { return m_first.size(); }
    std::size_t countEdges() const { return m_edges; }

    /// The half-edge that begins where `half` ends.
    static std::size_t next(std::size_t half) { return half % 3 == 2 ? half - 2 : half + 1; }

private:
    std::vector<unsigned int> m_first; ///< by half-edge
    std::size_t m_edges = 0;
};
} // namespace velmoran::scene
