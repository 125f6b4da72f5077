#pragma once

#include <cstddef>
#include <vector>

namespace velmoran::scene
{
/// How much one joint carries a vertex.
struct Influence
{
    int joint;
    float weight;
};

/// The influences of all vertices as a skin stores them (see `Skin`).
struct InfluenceLists
{
    const std::vector<unsigned int>& vcount;
    const std::vector<int>& v;
    const std::vector<float>& weights; ///< by weight index

    /// Of the influences that `vertex` wants, those that `v` has room for behind the first
    /// `before` ones. 0 for a vertex outside `vcount`.
    std::size_t countAt(std::size_t vertex, std::size_t before) const;

    /// Appends `count` influences behind the first `before` ones to `influences`. Leaves out
    /// those whose weight does not exist.
    void append(std::size_t before, std::size_t count, std::vector<Influence>& influences) const;
};

/// Makes of the influences of two vertices, in a row, those of a vertex halfway between: each
/// joint once, in ascending order, with half the sum of its weights.
void joinHalfway(std::vector<Influence>& influences);
} // namespace velmoran::scene
