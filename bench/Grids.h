#pragma once

#include <cstdint>
#include <vector>

namespace velmoran::bench
{
/// A rough grid of triangles, 500 squares wide, its corners shared: hardly two vertices have
/// the same normal. Sums of its numbers are exact, in whatever order.
struct FlatGrid
{
    std::vector<float> positions;      ///< 3 of each vertex
    std::vector<unsigned int> indices; ///< 3 of each triangle

    std::size_t vertexCount() const { return positions.size() / 3; }
    std::size_t triangleCount() const { return indices.size() / 3; }
};

/// `triangles` must be a multiple of 1000.
FlatGrid makeFlatGrid(std::int64_t triangles);

/// The entries of index records that name every attribute of a corner by the same index.
std::vector<unsigned int> repeatIndices(const std::vector<unsigned int>& indices,
                                        std::size_t attributes);
} // namespace velmoran::bench
