#pragma once

#include "scene/Forward.h"

#include <Eigen/Core>
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmoran::bench
{
/// A skin in flat arrays, which all cases are made from: a chain of joints, and vertices
/// along it, each carried by as many joints near it as any other, in unlike parts.
struct FlatSkin
{
    std::size_t influences;                 ///< of each vertex
    std::vector<float> positions;           ///< 3 of each vertex
    std::vector<int> joints;                ///< joint index of each influence
    std::vector<float> weights;             ///< of each influence
    std::vector<Eigen::Matrix4f> locals;    ///< of each joint, below the one before
    std::vector<Eigen::Matrix4f> boneSpace; ///< inverse bind matrix of each joint

    std::size_t vertexCount() const { return positions.size() / 3; }
    std::string nameOf(std::size_t joint) const;
};

FlatSkin makeFlatSkin(std::int64_t vertices, std::size_t influences, std::size_t joints);

/// World * inverse bind matrix of each joint.
std::vector<Eigen::Matrix4f> posesOf(const FlatSkin& skin);

/// All vertices posed: the plain loop, with matrices in columns and as many influences for each
/// vertex as the skin has.
std::vector<float> poseFlat(const FlatSkin& skin, const std::vector<Eigen::Matrix4f>& poses);

/// The skin as the avatar of a scene of our own: "human-template" carries it, the first joint
/// is called "sacrum".
struct SkinnedScene
{
    explicit SkinnedScene(const FlatSkin& flat);

    /// The whole call.
    scene::StreamPtr pose() const;

    scene::SceneManagerPtr manager;
    scene::NodePtr node;
    scene::StreamPtr vertices;
    scene::SkinPtr skin;
    std::vector<scene::NodePtr> joints;
};

/// 25,000, 100,000 and 400,000 vertices.
inline void skinSizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(25000)->Arg(100000)->Arg(400000);
    benchmark->Iterations(16)->Unit(benchmark::kMillisecond);
}

/// The largest difference of two lists; infinite when they differ in length or one has a NaN.
double differenceOf(const std::vector<float>& a, const std::vector<float>& b);
} // namespace velmoran::bench
