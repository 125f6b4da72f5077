// Merging the tree of one scene into another: other libraries, and a search for each name.

#include "bench/Cases.h"
#include "bench/Trees.h"

#ifdef VELMORAN_BENCH_OSG
#include <osg/CopyOp>
#include <osg/Group>
#endif

#ifdef VELMORAN_BENCH_ASSIMP
#include <assimp/SceneCombiner.h>
#endif

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

namespace velmoran::bench
{
namespace
{
[[maybe_unused]] constexpr auto SIZES = &atNAnd4N<100000>;

struct NamedNode
{
    std::string name;
    Eigen::Matrix4f local;
    std::vector<boost::shared_ptr<NamedNode>> children;
};
using NamedNodes = std::vector<boost::shared_ptr<NamedNode>>;

boost::shared_ptr<NamedNode> makeNode(const FlatTree& tree, std::size_t index)
{
    auto node = boost::make_shared<NamedNode>();
    node->name = tree.names[index];
    node->local = tree.locals[index];
    return node;
}

/// The nodes of `tree` in order, the root first.
NamedNodes makeNodes(const FlatTree& tree)
{
    NamedNodes nodes;
    for (std::size_t i = 0; i < tree.names.size(); ++i)
    {
        nodes.push_back(makeNode(tree, i));
        if (i != 0)
        {
            nodes[tree.parents[i]]->children.push_back(nodes.back());
        }
    }
    return nodes;
}

const NamedNode* find(const NamedNode& node, const std::string& name)
{
    const NamedNode* found = node.name == name ? &node : nullptr;
    for (std::size_t i = 0; found == nullptr && i < node.children.size(); ++i)
    {
        found = find(*node.children[i], name);
    }
    return found;
}

/// Walks the whole tree for every node that comes: quadratic.
void mergeSearching(benchmark::State& state)
{
    const FlatTree incoming = makeFlatTree(state.range(0), "part-");
    const NamedNodes present = makeNodes(makeFlatTree(state.range(0), "scene-"));
    bool isClash = false;
    for (auto _ : state)
    {
        NamedNodes merged;
        for (std::size_t i = 0; i < incoming.names.size(); ++i)
        {
            isClash |= find(*present.front(), incoming.names[i]) != nullptr;
            NamedNode& parent = i == 0 ? *present.front() : *merged[incoming.parents[i]];
            merged.push_back(makeNode(incoming, i));
            parent.children.push_back(merged.back());
        }
    }
    require(state, !isClash, "clash");
    countItems(state, state.range(0));
}
BENCHMARK(mergeSearching)->Name("merge/a search for each name")->Apply(&atNAnd4N<500>);

#ifdef VELMORAN_BENCH_OSG
void copyOsg(benchmark::State& state)
{
    const OsgNodes incoming = makeOsgNodes(makeFlatTree(state.range(0), "part-"));
    const osg::ref_ptr<osg::Group> scene = new osg::Group();
    for (auto _ : state)
    {
        scene->addChild(osg::clone(incoming[0].get(), osg::CopyOp::DEEP_COPY_ALL));
    }
    require(state, scene->getNumChildren() == 1, "not copied");
    countItems(state, state.range(0));
}
BENCHMARK(copyOsg)->Name("merge/OpenSceneGraph deep copy")->Apply(SIZES);
#endif

#ifdef VELMORAN_BENCH_ASSIMP
void copyAssimp(benchmark::State& state)
{
    const std::unique_ptr<aiNode> incoming = makeAssimpTree(makeFlatTree(state.range(0), "part-"));
    aiNode* copy = nullptr;
    for (auto _ : state)
    {
        Assimp::SceneCombiner::Copy(&copy, incoming.get());
    }
    const std::unique_ptr<aiNode> owner(copy);
    require(state, owner && owner->mNumChildren == incoming->mNumChildren, "not copied");
    countItems(state, state.range(0));
}
BENCHMARK(copyAssimp)->Name("merge/Assimp copy")->Apply(SIZES);

aiScene* makeAssimpScene(std::int64_t count, const char* prefix)
{
    auto* const scene = new aiScene();
    scene->mRootNode = makeAssimpTree(makeFlatTree(count, prefix)).release();
    return scene;
}

/// Moves the nodes of both scenes into a new one and puts a prefix before their names.
void mergeAssimp(benchmark::State& state)
{
    std::vector<aiScene*> sources = {makeAssimpScene(state.range(0), "scene-"),
                                     makeAssimpScene(state.range(0), "part-")};
    aiScene* merged = nullptr;
    for (auto _ : state)
    {
        Assimp::SceneCombiner::MergeScenes(&merged, sources, AI_INT_MERGE_SCENE_GEN_UNIQUE_NAMES);
    }
    const std::unique_ptr<aiScene> owner(merged);
    require(state, owner && owner->mRootNode->mNumChildren == 2, "not merged");
    countItems(state, state.range(0));
}
BENCHMARK(mergeAssimp)->Name("merge/Assimp MergeScenes")->Apply(SIZES);
#endif
} // namespace
} // namespace velmoran::bench
