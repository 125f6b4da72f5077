#pragma once

#include "core/Forward.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#ifdef VELMORAN_BENCH_OSG
#include <osg/MatrixTransform>
#endif

#ifdef VELMORAN_BENCH_ASSIMP
#include <assimp/scene.h>
#endif

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace velmoran::bench
{
/// A node tree in flat arrays, which all other trees are made from: every node has
/// eight children until the nodes run out, level by level.
struct FlatTree
{
    std::vector<std::size_t> parents; ///< each before its children; the root's is 0
    std::vector<std::string> names;
    std::vector<Eigen::Matrix4f> locals;
};

/// Nodes named `prefix` and a number, each turned and moved.
FlatTree makeFlatTree(std::int64_t count, const std::string& prefix);

/// The matrices of all nodes in the space of the root's parent.
std::vector<Eigen::Matrix4f> worldsOf(const FlatTree& tree);

/// The tree as that of a scene of our own; nobody listens to its events.
scene::SceneManagerPtr makeScene(const FlatTree& tree);

/// Adds the nodes of `tree` to `scene`, which has none; answers them in order.
std::vector<scene::NodePtr> addNodes(const scene::SceneManagerPtr& scene, const FlatTree& tree);

#ifdef VELMORAN_BENCH_OSG
using OsgNodes = std::vector<osg::ref_ptr<osg::MatrixTransform>>;

/// The nodes of `tree` in order, the root first.
OsgNodes makeOsgNodes(const FlatTree& tree);
#endif

#ifdef VELMORAN_BENCH_ASSIMP
/// The tree as it hangs below its root, which owns it.
std::unique_ptr<aiNode> makeAssimpTree(const FlatTree& tree);
#endif
} // namespace velmoran::bench
