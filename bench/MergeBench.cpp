// Merging the tree of one scene into another; nobody listens.

#include "bench/Cases.h"
#include "bench/Trees.h"
#include "core/logger/Logger.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <unordered_set>

namespace velmoran::bench
{
namespace
{
constexpr auto SIZES = &atNAnd4N<100000>;

/// So few that a search of the whole tree for each node comes to an end.
constexpr auto FEW = &atNAnd4N<500>;

/// What the scene that is merged into holds.
enum class Present
{
    NOTHING,
    OTHER_NODES, ///< as many nodes as are merged, under other identifiers
    SAME_NODES   ///< the nodes that are merged
};

FlatTree makePresent(Present present, std::int64_t count)
{
    switch (present)
    {
    case Present::NOTHING:
        return makeFlatTree(1, "scene-");
    case Present::OTHER_NODES:
        return makeFlatTree(count, "scene-");
    case Present::SAME_NODES:
        break;
    }
    return makeFlatTree(count, "part-");
}

void mergeOurs(benchmark::State& state, Present present, bool isLogging)
{
    core::logger::Logger::active = isLogging;
    const scene::SceneManagerPtr incoming = makeScene(makeFlatTree(state.range(0), "part-"));
    const scene::SceneManagerPtr scene = makeScene(makePresent(present, state.range(0)));
    const std::size_t before = scene->getNodeArray().size();
    for (auto _ : state)
    {
        scene->mergeSceneManager(incoming, 0, "");
    }
    core::logger::Logger::active = true;
    const std::size_t added = scene->getNodeArray().size() - before;
    require(state, added == static_cast<std::size_t>(state.range(0)), "wrong size");
    countItems(state, state.range(0));
}
BENCHMARK_CAPTURE(mergeOurs, empty, Present::NOTHING, true)
    ->Name("merge/ours, into an empty scene")
    ->Apply(SIZES);
BENCHMARK_CAPTURE(mergeOurs, no_clash, Present::OTHER_NODES, true)
    ->Name("merge/ours, no clash")
    ->Apply(SIZES);
BENCHMARK_CAPTURE(mergeOurs, few, Present::OTHER_NODES, true)
    ->Name("merge/ours, no clash")
    ->Apply(FEW);
BENCHMARK_CAPTURE(mergeOurs, clash, Present::SAME_NODES, true)
    ->Name("merge/ours, every identifier clashes")
    ->Apply(SIZES);
BENCHMARK_CAPTURE(mergeOurs, clash_without_log, Present::SAME_NODES, false)
    ->Name("merge/ours, every identifier clashes, logging off")
    ->Apply(SIZES);

void mergeFlat(benchmark::State& state, Present present)
{
    const FlatTree incoming = makeFlatTree(state.range(0), "part-");
    FlatTree scene = makePresent(present, state.range(0));
    for (auto _ : state)
    {
        std::unordered_set<std::string> taken(scene.names.begin(), scene.names.end());
        const std::size_t offset = scene.names.size();
        for (std::size_t i = 0; i < incoming.names.size(); ++i)
        {
            std::string name = incoming.names[i];
            if (taken.count(name) != 0)
            {
                name += "__renamed_OID" + std::to_string(i) + "__";
            }
            taken.insert(name);
            scene.names.push_back(std::move(name));
            scene.parents.push_back(i == 0 ? 0 : incoming.parents[i] + offset);
            scene.locals.push_back(incoming.locals[i]);
        }
    }
    countItems(state, state.range(0));
}
BENCHMARK_CAPTURE(mergeFlat, no_clash, Present::OTHER_NODES)
    ->Name("merge/limit, no clash")
    ->Apply(SIZES);
BENCHMARK_CAPTURE(mergeFlat, clash, Present::SAME_NODES)
    ->Name("merge/limit, every identifier clashes")
    ->Apply(SIZES);
} // namespace
} // namespace velmoran::bench
