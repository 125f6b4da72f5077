// Copying a tree of nodes under another node of the same scene; nobody listens.

#include "bench/TreeCases.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#ifdef VELMORAN_BENCH_OSG
#include <osg/CopyOp>
#include <osg/Group>
#endif

#ifdef VELMORAN_BENCH_ASSIMP
#include <assimp/SceneCombiner.h>
#endif

#include <utility>

namespace velmoran::bench
{
namespace
{
constexpr auto SIZES = &atNAnd4N<100000>;

/// A scene whose root has the tree to copy and a node for the copy.
struct CopyScene
{
    explicit CopyScene(std::int64_t count) : manager(makeScene(makeFlatTree(1, "scene-")))
    {
        const FlatTree& tree = treeOf(count);
        std::vector<scene::NodePtr> nodes;
        for (std::size_t i = 0; i < tree.names.size(); ++i)
        {
            nodes.push_back(add(i == 0 ? manager->getRoot() : nodes[tree.parents[i]]));
            nodes.back()->setID(tree.names[i]);
            nodes.back()->setName(tree.names[i]);
            nodes.back()->setTransformations(tree.locals[i]);
        }
        source = nodes.front();
        target = add(manager->getRoot());
    }

    scene::NodePtr add(const scene::NodePtr& parent) const
    {
        const auto node = boost::make_shared<scene::Node>(manager);
        parent->addNode(node);
        return node;
    }

    void requireCopy(benchmark::State& state) const
    {
        const scene::NodePtr copy = target->getChildNode(0);
        const auto wanted = static_cast<std::size_t>(2 * state.range(0) + 2);
        require(state, copy && copy->getName() == source->getName(), "not copied");
        require(state, manager->getNodeArray().size() == wanted, "wrong size");
        countItems(state, state.range(0));
    }

    scene::SceneManagerPtr manager;
    scene::NodePtr source;
    scene::NodePtr target;
};

/// Node by node, each under a new identifier.
void copyOurs(benchmark::State& state)
{
    const CopyScene scene(state.range(0));
    for (auto _ : state)
    {
        std::vector<std::pair<const scene::Node*, scene::NodePtr>> open = {
            {scene.source.get(), scene.target}};
        while (!open.empty())
        {
            const auto [node, parent] = open.back();
            open.pop_back();
            const scene::NodePtr copy = node->copyFor(scene.manager, scene::Node::generateID());
            parent->addNode(copy);
            const std::vector<scene::NodePtr>& children = node->getChildren();
            for (auto child = children.rbegin(); child != children.rend(); ++child)
            {
                open.emplace_back(child->get(), copy);
            }
        }
    }
    scene.requireCopy(state);
}
BENCHMARK(copyOurs)->Name("deep copy/ours, node by node")->Apply(SIZES);

/// With all that nodes hold, too, and the log line of each clash.
void copyOursWhole(benchmark::State& state)
{
    const CopyScene scene(state.range(0));
    for (auto _ : state)
    {
        scene.manager->mergeSceneGraph(scene.target, scene.source, {}, {}, {}, {}, false, false);
    }
    scene.requireCopy(state);
}
BENCHMARK(copyOursWhole)->Name("deep copy/ours, by mergeSceneGraph")->Apply(SIZES);

void copyFlat(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    for (auto _ : state)
    {
        const FlatTree copy = tree;
        benchmark::DoNotOptimize(copy.locals.data());
    }
    countItems(state, state.range(0));
}
BENCHMARK(copyFlat)->Name("deep copy/limit")->Apply(SIZES);

#ifdef VELMORAN_BENCH_OSG
void copyOsg(benchmark::State& state)
{
    const OsgNodes nodes = makeOsgNodes(treeOf(state.range(0)));
    const osg::ref_ptr<osg::Group> target = new osg::Group();
    for (auto _ : state)
    {
        target->addChild(osg::clone(nodes[0].get(), osg::CopyOp::DEEP_COPY_ALL));
    }
    require(state, target->getNumChildren() == 1, "not copied");
    countItems(state, state.range(0));
}
BENCHMARK(copyOsg)->Name("deep copy/OpenSceneGraph")->Apply(SIZES);
#endif

#ifdef VELMORAN_BENCH_ASSIMP
void copyAssimp(benchmark::State& state)
{
    const std::unique_ptr<aiNode> source = makeAssimpTree(treeOf(state.range(0)));
    aiNode* copy = nullptr;
    for (auto _ : state)
    {
        Assimp::SceneCombiner::Copy(&copy, source.get());
    }
    const std::unique_ptr<aiNode> owner(copy);
    require(state, owner && owner->mNumChildren == source->mNumChildren, "not copied");
    countItems(state, state.range(0));
}
BENCHMARK(copyAssimp)->Name("deep copy/Assimp")->Apply(SIZES);
#endif
} // namespace
} // namespace velmoran::bench
