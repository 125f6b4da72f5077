// Refining triangle meshes once: over flat arrays, edges and positions found by general maps.

#include "bench/Cases.h"
#include "bench/Refinements.h"

#ifdef VELMORAN_BENCH_ABSL
#include <absl/container/flat_hash_map.h>
#endif

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace velmoran::bench
{
namespace
{
using Position = std::array<float, 3>;

Position positionOf(const RefinementGrid& grid, unsigned int index)
{
    const float* const p = &grid.positions[3 * std::size_t(index)];
    return {p[0], p[1], p[2]};
}

Position midpointOf(const RefinementGrid& grid, unsigned int from, unsigned int to)
{
    const Position a = positionOf(grid, from);
    const Position b = positionOf(grid, to);
    return {a[0] + (b[0] - a[0]) * 0.5F, a[1] + (b[1] - a[1]) * 0.5F, a[2] + (b[2] - a[2]) * 0.5F};
}

/// Makes the four triangles of each one; `Vertices` answers the indices of refined vertices.
template <typename Vertices>
RefinementGrid refine(const RefinementGrid& grid)
{
    RefinementGrid refined;
    Vertices vertices(grid, refined.positions);
    refined.corners.reserve(4 * grid.corners.size());
    for (std::size_t i = 0; i < grid.corners.size(); i += 3)
    {
        const unsigned int* const c = &grid.corners[i];
        const unsigned int a = vertices.corner(c[0]);
        const unsigned int ab = vertices.midpoint(c[0], c[1]);
        const unsigned int ca = vertices.midpoint(c[2], c[0]);
        const unsigned int b = vertices.corner(c[1]);
        const unsigned int bc = vertices.midpoint(c[1], c[2]);
        const unsigned int d = vertices.corner(c[2]);
        const unsigned int all[] = {a, ab, ca, ab, b, bc, ca, bc, d, ab, bc, ca};
        refined.corners.insert(refined.corners.end(), std::begin(all), std::end(all));
    }
    return refined;
}

template <typename Vertices>
void refineByMaps(benchmark::State& state)
{
    const RefinementGrid grid = makeRefinementGrid(state.range(0));
    RefinementGrid refined;
    for (auto _ : state)
    {
        refined = refine<Vertices>(grid);
        benchmark::DoNotOptimize(refined.positions.data());
    }
    // By Euler's formula, for a grid without holes.
    const std::size_t vertices = grid.positions.size() / 3;
    const std::size_t edges = vertices + grid.corners.size() / 3 - 1;
    require(state, refined.positions.size() / 3 == vertices + edges, "wrong vertices");
    countItems(state, state.range(0));
}

/// Every edge once in an ordered set, every position in an ordered map.
class OrderedVertices
{
public:
    OrderedVertices(const RefinementGrid& grid, std::vector<float>& positions)
        : m_grid(grid), m_positions(positions)
    {
    }

    unsigned int corner(unsigned int index) { return indexOf(positionOf(m_grid, index)); }

    /// From the end that the edge was first met from, since the sums may differ otherwise.
    unsigned int midpoint(unsigned int from, unsigned int to)
    {
        const bool isTurned = m_edges.count({to, from}) != 0;
        if (!isTurned)
        {
            m_edges.insert({from, to});
        }
        return indexOf(isTurned ? midpointOf(m_grid, to, from) : midpointOf(m_grid, from, to));
    }

private:
    unsigned int indexOf(const Position& position)
    {
        const auto next = static_cast<unsigned int>(m_indices.size());
        const auto inserted = m_indices.try_emplace(position, next);
        if (inserted.second)
        {
            m_positions.insert(m_positions.end(), position.begin(), position.end());
        }
        return inserted.first->second;
    }

    const RefinementGrid& m_grid;
    std::vector<float>& m_positions; ///< of the refined grid
    std::set<std::pair<unsigned int, unsigned int>> m_edges;
    std::map<Position, unsigned int> m_indices;
};
BENCHMARK_TEMPLATE(refineByMaps, OrderedVertices)
    ->Name("subdivision/std::set and std::map")
    ->Apply(refinementSizes);

#ifdef VELMORAN_BENCH_ABSL
/// Edges by the pair of their indices; positions are taken to be distinct.
class HashedVertices
{
public:
    HashedVertices(const RefinementGrid& grid, std::vector<float>& positions)
        : m_grid(grid), m_positions(positions), m_corners(grid.positions.size() / 3, 0)
    {
        m_positions.reserve(4 * grid.positions.size() + 4096);
        m_edges.reserve(grid.corners.size() / 2 + 4096);
    }

    unsigned int corner(unsigned int index)
    {
        if (m_corners[index] == 0)
        {
            m_corners[index] = add(positionOf(m_grid, index)) + 1;
        }
        return m_corners[index] - 1;
    }

    unsigned int midpoint(unsigned int from, unsigned int to)
    {
        const std::uint64_t key = std::uint64_t{std::min(from, to)} << 32U | std::max(from, to);
        const auto inserted = m_edges.try_emplace(key, 0U);
        if (inserted.second)
        {
            inserted.first->second = add(midpointOf(m_grid, from, to));
        }
        return inserted.first->second;
    }

private:
    unsigned int add(const Position& position)
    {
        m_positions.insert(m_positions.end(), position.begin(), position.end());
        return static_cast<unsigned int>(m_positions.size() / 3 - 1);
    }

    const RefinementGrid& m_grid;
    std::vector<float>& m_positions;     ///< of the refined grid
    std::vector<unsigned int> m_corners; ///< 1 + index in the refined grid; 0 for none
    absl::flat_hash_map<std::uint64_t, unsigned int> m_edges;
};
BENCHMARK_TEMPLATE(refineByMaps, HashedVertices)
    ->Name("subdivision/absl::flat_hash_map of edges")
    ->Apply(refinementSizes);
#endif
} // namespace
} // namespace velmoran::bench
