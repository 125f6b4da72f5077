// Building trees, finding nodes in them, and the matrices of all nodes: other libraries.

#include "bench/TreeCases.h"

#ifdef VELMORAN_BENCH_OSG
#include <osg/NodeVisitor>
#include <osg/Transform>
#endif

#ifdef VELMORAN_BENCH_ASSIMP
#include <assimp/scene.h>
#endif

#ifdef VELMORAN_BENCH_OGRE
#include <OgreLogManager.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#endif

#include <memory>

namespace velmoran::bench
{
namespace
{
[[maybe_unused]] constexpr auto SIZES = &atNAnd4N<100000>;

#ifdef VELMORAN_BENCH_OSG
// OpenSceneGraph

void buildOsg(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    OsgNodes nodes;
    for (auto _ : state)
    {
        nodes = makeOsgNodes(tree);
    }
    require(state, nodes.size() == tree.names.size(), "wrong size");
    countItems(state, state.range(0));
}
BENCHMARK(buildOsg)->Name("build/OpenSceneGraph")->Apply(SIZES);

class NameSearch : public osg::NodeVisitor
{
public:
    explicit NameSearch(const std::string& name)
        : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), m_name(name)
    {
    }

    void apply(osg::Node& node) override
    {
        if (m_found == nullptr && node.getName() == m_name)
        {
            m_found = &node;
        }
        if (m_found == nullptr)
        {
            traverse(node);
        }
    }

    const osg::Node* found() const { return m_found; }

private:
    const std::string& m_name;
    const osg::Node* m_found = nullptr;
};

void findOsg(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    const OsgNodes nodes = makeOsgNodes(tree);
    search(
        state, pickNames(tree, 32),
        [&](const std::string& name)
        {
            NameSearch visitor(name);
            nodes[0]->accept(visitor);
            return visitor.found();
        },
        [](const osg::Node* node) { return node->getName(); });
}
BENCHMARK(findOsg)->Name("getNodeByID/OpenSceneGraph visitor")->Apply(SIZES);

Eigen::Matrix4f toEigen(const osg::Matrix& matrix)
{
    return Eigen::Map<const Eigen::Matrix4d>(matrix.ptr()).cast<float>();
}

class WorldCollector : public osg::NodeVisitor
{
public:
    explicit WorldCollector(std::vector<Eigen::Matrix4f>& worlds)
        : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), m_worlds(worlds), m_stack{osg::Matrix()}
    {
    }

    void apply(osg::MatrixTransform& node) override
    {
        osg::Matrix world = m_stack.back();
        node.computeLocalToWorldMatrix(world, this);
        m_worlds.push_back(toEigen(world));
        m_stack.push_back(world);
        traverse(node);
        m_stack.pop_back();
    }

private:
    std::vector<Eigen::Matrix4f>& m_worlds;
    std::vector<osg::Matrix> m_stack;
};

void worldsOsg(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    const OsgNodes nodes = makeOsgNodes(tree);
    computeWorlds(state, tree,
                  [&](std::vector<Eigen::Matrix4f>& worlds)
                  {
                      worlds.reserve(nodes.size());
                      WorldCollector visitor(worlds);
                      nodes[0]->accept(visitor);
                  });
}
BENCHMARK(worldsOsg)->Name("combined matrices/OpenSceneGraph visitor")->Apply(SIZES);

void worldsOsgOneByOne(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    const OsgNodes nodes = makeOsgNodes(tree);
    computeWorlds(state, tree,
                  [&](std::vector<Eigen::Matrix4f>& worlds)
                  {
                      worlds.reserve(nodes.size());
                      for (const auto& node : nodes)
                      {
                          const osg::NodePathList paths = node->getParentalNodePaths();
                          worlds.push_back(toEigen(osg::computeLocalToWorld(paths.front())));
                      }
                  });
}
BENCHMARK(worldsOsgOneByOne)->Name("combined matrices/OpenSceneGraph node paths")->Apply(SIZES);
#endif

#ifdef VELMORAN_BENCH_ASSIMP
// Assimp

void buildAssimp(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    std::unique_ptr<aiNode> root;
    for (auto _ : state)
    {
        root = makeAssimpTree(tree);
    }
    require(state, root->FindNode(tree.names.back().c_str()) != nullptr, "not built");
    countItems(state, state.range(0));
}
BENCHMARK(buildAssimp)->Name("build/Assimp")->Apply(SIZES);

void findAssimp(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    const std::unique_ptr<aiNode> root = makeAssimpTree(tree);
    search(
        state, pickNames(tree, 32),
        [&](const std::string& name) { return root->FindNode(name.c_str()); },
        [](const aiNode* node) { return node->mName.C_Str(); });
}
BENCHMARK(findAssimp)->Name("getNodeByID/Assimp FindNode")->Apply(SIZES);
#endif

#ifdef VELMORAN_BENCH_OGRE
// Ogre, which keeps a node's world transform until something above it changes

/// Ogre's objects for a whole program; no window, no renderer, no log.
Ogre::Root& ogreRoot()
{
    static Ogre::LogManager logs;
    static const Ogre::Log* const log = logs.createLog("", true, false, true);
    static Ogre::Root root("", "", "");
    benchmark::DoNotOptimize(log);
    return root;
}

std::vector<Ogre::SceneNode*> makeOgreNodes(Ogre::SceneManager& scene, const FlatTree& tree)
{
    std::vector<Ogre::SceneNode*> nodes;
    for (std::size_t i = 0; i < tree.names.size(); ++i)
    {
        Ogre::SceneNode* const parent = i == 0 ? scene.getRootSceneNode() : nodes[tree.parents[i]];
        const Eigen::Matrix4f& m = tree.locals[i];
        const Ogre::Matrix3 rotation(m(0, 0), m(0, 1), m(0, 2), m(1, 0), m(1, 1), m(1, 2), m(2, 0),
                                     m(2, 1), m(2, 2));
        nodes.push_back(parent->createChildSceneNode(
            tree.names[i], Ogre::Vector3(m(0, 3), m(1, 3), m(2, 3)), Ogre::Quaternion(rotation)));
    }
    return nodes;
}

void worldsOgre(benchmark::State& state)
{
    const FlatTree& tree = treeOf(state.range(0));
    Ogre::SceneManager* const scene = ogreRoot().createSceneManager();
    const std::vector<Ogre::SceneNode*> nodes = makeOgreNodes(*scene, tree);
    const auto readWorlds = [&](std::vector<Eigen::Matrix4f>& worlds)
    {
        for (Ogre::SceneNode* const node : nodes)
        {
            const Ogre::Affine3& world = node->_getFullTransform();
            worlds.push_back(Eigen::Map<const Eigen::Matrix4f>(world[0]).transpose());
        }
    };
    computeWorlds(state, tree,
                  [&](std::vector<Eigen::Matrix4f>& worlds)
                  {
                      worlds.reserve(nodes.size());
                      nodes[0]->_update(true, true);
                      readWorlds(worlds);
                  });
    ogreRoot().destroySceneManager(scene);
}
BENCHMARK(worldsOgre)->Name("combined matrices/Ogre update")->Apply(SIZES);
#endif
} // namespace
} // namespace velmoran::bench
