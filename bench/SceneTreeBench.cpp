// Building trees, finding nodes in them, and the matrices of all nodes: ours and the limit.

#include "bench/TreeCases.h"
#include "core/event/EventManager.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <string_view>
#include <unordered_map>

namespace velmoran::bench
{
namespace
{
constexpr auto SIZES = &atNAnd4N<100000>;

// Building

void buildOurs(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    const auto eventManager = boost::make_shared<core::event::EventManager>();
    const auto scene = boost::make_shared<scene::SceneManager>(eventManager);
    std::vector<scene::NodePtr> nodes;
    for (auto _ : state)
    {
        nodes = addNodes(scene, tree);
    }
    require(state, scene->getNodeArray().size() == tree.names.size(), "wrong size");
    countItems(state, state.range(0));
}
BENCHMARK(buildOurs)->Name("build/ours")->Apply(SIZES);

void buildFlat(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    FlatTree built;
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < tree.names.size(); ++i)
        {
            built.parents.push_back(tree.parents[i]);
            built.names.push_back(tree.names[i]);
            built.locals.push_back(tree.locals[i]);
        }
    }
    countItems(state, state.range(0));
}
BENCHMARK(buildFlat)->Name("build/limit")->Apply(SIZES);

// Searching

void findOurs(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    const scene::SceneManagerPtr scene = makeScene(tree);
    scene->getNodeByID(tree.names[0]);
    scene->getNodeByID(tree.names[0]); // from the second search on the tree counts as unchanged
    search(
        state, pickNames(tree, LOOKUPS),
        [&](const std::string& name) { return scene->getNodeByID(name); },
        [](const scene::NodePtr& node) { return node->getID(); });
}
BENCHMARK(findOurs)->Name("getNodeByID/ours")->Apply(SIZES);

void findOursAfterChange(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    const scene::SceneManagerPtr scene = makeScene(tree);
    search(
        state, pickNames(tree, LOOKUPS),
        [&](const std::string& name) { return scene->getNodeByID(name); },
        [](const scene::NodePtr& node) { return node->getID(); });
}
BENCHMARK(findOursAfterChange)->Name("getNodeByID/ours, first 10,000 after a change")->Apply(SIZES);

void findFlat(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    std::unordered_map<std::string_view, std::size_t> index;
    for (std::size_t i = 0; i < tree.names.size(); ++i)
    {
        index.emplace(tree.names[i], i);
    }
    search(
        state, pickNames(tree, LOOKUPS),
        [&](const std::string& name) { return index.find(name)->second; },
        [&](std::size_t node) { return tree.names[node]; });
}
BENCHMARK(findFlat)->Name("getNodeByID/limit")->Apply(SIZES);

// Matrices of all nodes

void worldsOurs(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    const scene::SceneManagerPtr scene = makeScene(tree);
    computeWorlds(state, tree,
                  [&](std::vector<Eigen::Matrix4f>& worlds)
                  { worlds = scene->getRoot()->getCombinedTransformationsBelow(); });
}
BENCHMARK(worldsOurs)->Name("combined matrices/ours, together")->Apply(SIZES);

void worldsOursOneByOne(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    const scene::SceneManagerPtr scene = makeScene(tree);
    const std::vector<scene::NodePtr> nodes = scene->getNodeArray();
    computeWorlds(state, tree,
                  [&](std::vector<Eigen::Matrix4f>& worlds)
                  {
                      worlds.reserve(nodes.size());
                      for (const scene::NodePtr& node : nodes)
                      {
                          worlds.push_back(node->getCombinedTransformations());
                      }
                  });
}
BENCHMARK(worldsOursOneByOne)->Name("combined matrices/ours, one by one")->Apply(SIZES);

void worldsFlat(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    computeWorlds(state, tree,
                  [&](std::vector<Eigen::Matrix4f>& worlds) { worlds = worldsOf(tree); });
}
BENCHMARK(worldsFlat)->Name("combined matrices/limit, together")->Apply(SIZES);

void worldsFlatOneByOne(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    computeWorlds(state, tree,
                  [&](std::vector<Eigen::Matrix4f>& worlds)
                  {
                      worlds.reserve(tree.locals.size());
                      for (std::size_t i = 0; i < tree.locals.size(); ++i)
                      {
                          Eigen::Matrix4f world = tree.locals[i];
                          for (std::size_t node = i; node != 0;)
                          {
                              node = tree.parents[node];
                              world = tree.locals[node] * world;
                          }
                          worlds.push_back(world);
                      }
                  });
}
BENCHMARK(worldsFlatOneByOne)->Name("combined matrices/limit, one by one")->Apply(SIZES);
} // namespace
} // namespace velmoran::bench
