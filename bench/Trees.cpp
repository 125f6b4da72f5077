#include "bench/Trees.h"

#include "core/event/EventManager.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Geometry>
#include <boost/make_shared.hpp>

#include <cstdio>

namespace velmoran::bench
{
namespace
{
Eigen::Matrix4f makeLocal(std::int64_t i)
{
    const auto step = static_cast<float>(i % 89);
    Eigen::Affine3f local = Eigen::Affine3f::Identity();
    local.translate(Eigen::Vector3f(0.01F * step, 1.0F, -0.02F * step));
    local.rotate(Eigen::AngleAxisf(0.05F * step, Eigen::Vector3f::UnitZ()));
    return local.matrix();
}
} // namespace

FlatTree makeFlatTree(std::int64_t count, const std::string& prefix)
{
    FlatTree tree;
    for (std::int64_t i = 0; i < count; ++i)
    {
        char number[16];
        std::snprintf(number, sizeof number, "%06d", static_cast<int>(i));
        tree.parents.push_back(static_cast<std::size_t>(i == 0 ? 0 : (i - 1) / 8));
        tree.names.push_back(prefix + number);
        tree.locals.push_back(makeLocal(i));
    }
    return tree;
}

std::vector<Eigen::Matrix4f> worldsOf(const FlatTree& tree)
{
    std::vector<Eigen::Matrix4f> worlds(tree.locals.size());
    worlds[0] = tree.locals[0];
    for (std::size_t i = 1; i < worlds.size(); ++i)
    {
        worlds[i].noalias() = worlds[tree.parents[i]] * tree.locals[i];
    }
    return worlds;
}

scene::SceneManagerPtr makeScene(const FlatTree& tree)
{
    const auto eventManager = boost::make_shared<core::event::EventManager>();
    const auto scene = boost::make_shared<scene::SceneManager>(eventManager);
    addNodes(scene, tree);
    return scene;
}

std::vector<scene::NodePtr> addNodes(const scene::SceneManagerPtr& scene, const FlatTree& tree)
{
    std::vector<scene::NodePtr> nodes;
    nodes.reserve(tree.names.size());
    for (std::size_t i = 0; i < tree.names.size(); ++i)
    {
        nodes.push_back(i == 0 ? scene->getRoot() : boost::make_shared<scene::Node>(scene));
        scene::Node& node = *nodes.back();
        node.setID(tree.names[i]);
        node.setName(tree.names[i]);
        node.setTransformations(tree.locals[i]);
        if (i != 0)
        {
            nodes[tree.parents[i]]->addNode(nodes.back());
        }
    }
    return nodes;
}

#ifdef VELMORAN_BENCH_OSG
OsgNodes makeOsgNodes(const FlatTree& tree)
{
    OsgNodes nodes;
    nodes.reserve(tree.names.size());
    for (std::size_t i = 0; i < tree.names.size(); ++i)
    {
        // Both keep a matrix column by column when read by those who multiply from
        // the right, and by rows when read by those who multiply from the left.
        nodes.push_back(new osg::MatrixTransform(osg::Matrix(tree.locals[i].data())));
        nodes.back()->setName(tree.names[i]);
        if (i != 0)
        {
            nodes[tree.parents[i]]->addChild(nodes.back());
        }
    }
    return nodes;
}
#endif

#ifdef VELMORAN_BENCH_ASSIMP
std::unique_ptr<aiNode> makeAssimpTree(const FlatTree& tree)
{
    std::vector<aiNode*> nodes;
    nodes.reserve(tree.names.size());
    std::vector<unsigned int> childCounts(tree.names.size(), 0);
    for (std::size_t i = 0; i < tree.names.size(); ++i)
    {
        nodes.push_back(new aiNode(tree.names[i]));
        Eigen::Map<Eigen::Matrix<float, 4, 4, Eigen::RowMajor>>(nodes[i]->mTransformation[0]) =
            tree.locals[i];
        childCounts[tree.parents[i]] += i != 0 ? 1U : 0U;
    }
    for (std::size_t i = 1; i < nodes.size(); ++i)
    {
        aiNode& parent = *nodes[tree.parents[i]];
        if (parent.mChildren == nullptr)
        {
            parent.mChildren = new aiNode*[childCounts[tree.parents[i]]];
        }
        parent.mChildren[parent.mNumChildren++] = nodes[i];
        nodes[i]->mParent = &parent;
    }
    return std::unique_ptr<aiNode>(nodes.front());
}
#endif
} // namespace velmoran::bench
