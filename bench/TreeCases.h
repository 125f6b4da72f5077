#pragma once

#include "bench/Cases.h"
#include "bench/Trees.h"

#include <map>
#include <random>
#include <string>
#include <vector>

namespace velmoran::bench
{
/// The tree of `count` nodes that all cases use.
inline const FlatTree& treeOf(std::int64_t count)
{
    static std::map<std::int64_t, FlatTree> trees;
    FlatTree& tree = trees[count];
    if (tree.names.empty())
    {
        tree = makeFlatTree(count, "part-");
    }
    return tree;
}

inline constexpr std::size_t LOOKUPS = 10000;

/// Names of the tree in random order.
inline std::vector<std::string> pickNames(const FlatTree& tree, std::size_t count)
{
    std::mt19937 random(1);
    std::vector<std::string> picked;
    for (std::size_t i = 0; i < count; ++i)
    {
        picked.push_back(tree.names[random() % tree.names.size()]);
    }
    return picked;
}

/// Calls `find` with each name; fails the case when it does not give such a node.
template <typename Find, typename GetName>
void search(benchmark::State& state, const std::vector<std::string>& wanted, Find find,
            GetName getName)
{
    std::size_t found = 0;
    for (auto _ : state)
    {
        for (const std::string& name : wanted)
        {
            found += getName(find(name)) == name ? 1 : 0;
        }
    }
    const auto rounds = static_cast<std::size_t>(state.iterations());
    require(state, found == rounds * wanted.size(), "not found");
    countItems(state, static_cast<std::int64_t>(wanted.size()));
}

/// Times `compute`, which puts the matrices of all nodes into an empty list in an order of
/// its own; fails the case when they are not those of the tree.
template <typename Compute>
void computeWorlds(benchmark::State& state, const FlatTree& tree, Compute compute)
{
    std::vector<Eigen::Matrix4f> worlds;
    for (auto _ : state)
    {
        worlds = std::vector<Eigen::Matrix4f>();
        compute(worlds);
        benchmark::DoNotOptimize(worlds.data());
    }
    // The orders differ; the sum does not.
    const auto sum = [](const std::vector<Eigen::Matrix4f>& matrices)
    {
        Eigen::Matrix4d total = Eigen::Matrix4d::Zero();
        for (const Eigen::Matrix4f& matrix : matrices)
        {
            total += matrix.cast<double>();
        }
        return total;
    };
    const bool isSame = sum(worlds).isApprox(sum(worldsOf(tree)), 1e-4);
    require(state, worlds.size() == tree.names.size() && isSame, "wrong matrices");
    countItems(state, state.range(0));
}
} // namespace velmoran::bench
