#pragma once

#include "bench/Cases.h"

#include <Eigen/Core>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoran::bench
{
using TrianglePoints = std::array<Eigen::Vector3f, 3>;

/// A bumpy ring around the z axis, of radius 1. Triangles stand in the order of its rows.
std::vector<TrianglePoints> makeRing(std::int64_t triangles);

struct RayPoints
{
    Eigen::Vector3f origin;
    Eigen::Vector3f direction; ///< a unit vector
};

constexpr std::size_t RAYS = 100000;

/// Rays from all around through the unit sphere's surface; about half meet the ring.
std::vector<RayPoints> makeRays();

/// Akenine-Möller's test in floats; `half` reaches from the centre to the sides.
bool meetsBox(const TrianglePoints& triangle, const Eigen::Vector3f& centre,
              const Eigen::Vector3f& half);

/// Limits of the cells: of ours and of the flat octree.
constexpr int MAX_DEPTH = 8;
constexpr int MAX_PRIMITIVES = 32;

/// Distances of the hits, 0 for rays that meet nothing, summed.
double sumOf(const std::vector<float>& distances);

/// An octree over flat arrays as one would write it for floats: indices in each cell, the
/// centre test before the box test, rays by recursion front to back.
class FlatOctree
{
public:
    explicit FlatOctree(const std::vector<TrianglePoints>& triangles);

    /// The distance to the nearest triangle; 0 for none.
    float nearest(const RayPoints& ray) const;

    std::size_t cellCount() const { return m_cells.size(); }
    std::size_t entryCount() const { return m_entries.size(); }

private:
    struct Cell
    {
        Eigen::Vector3f min;
        Eigen::Vector3f max;
        std::uint32_t firstChild; ///< 0 for a leaf
        std::uint32_t firstEntry;
        std::uint32_t entryCount;
    };

    void divide(std::uint32_t cell, const std::vector<std::uint32_t>& incoming, int depth);
    void visit(std::uint32_t cell, const RayPoints& ray, const Eigen::Vector3f& inverse,
               float& nearest) const;

    const std::vector<TrianglePoints>& m_triangles;
    std::vector<Cell> m_cells;
    std::vector<std::uint32_t> m_entries;
};

/// Of all rays of `makeRays`.
std::vector<float> nearestDistances(const FlatOctree& octree);

/// Times `nearest`, which answers the distance to what a ray meets first, 0 for nothing, with
/// all rays; fails the case when it meets others than the flat octree.
template <typename Nearest>
void pickAll(benchmark::State& state, const std::vector<TrianglePoints>& ring, Nearest nearest)
{
    const std::vector<RayPoints> rays = makeRays();
    std::vector<float> distances(RAYS);
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < RAYS; ++i)
        {
            distances[i] = nearest(rays[i]);
        }
        benchmark::DoNotOptimize(distances.data());
    }
    const double wanted = sumOf(nearestDistances(FlatOctree(ring)));
    require(state, std::abs(sumOf(distances) - wanted) < 1e-4 * wanted, "other hits");
    countItems(state, RAYS);
}
} // namespace velmoran::bench
