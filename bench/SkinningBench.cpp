// Posing skinned meshes, replacing joints and morphing avatars: ours and the limits.

#include "bench/Cases.h"
#include "bench/Skins.h"
#include "core/event/EventManager.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Geometry>
#include <Eigen/LU>
#include <boost/make_shared.hpp>

namespace velmoran::bench
{
namespace
{
using namespace velmoran::scene;

constexpr std::size_t INFLUENCES = 4;
constexpr std::size_t JOINTS = 100;
constexpr std::int64_t AVATAR_VERTICES = 20000;
constexpr std::size_t AVATAR_JOINTS = 150;
constexpr double TOLERANCE = 1e-3; // the avatars reach to some hundreds

// Posing

void poseOurs(benchmark::State& state)
{
    const FlatSkin flat = makeFlatSkin(state.range(0), INFLUENCES, JOINTS);
    const SkinnedScene scene(flat);
    StreamPtr posed;
    for (auto _ : state)
    {
        posed = scene.pose();
    }
    const std::vector<float> wanted = poseFlat(flat, posesOf(flat));
    require(state, differenceOf(posed->getData(), wanted) < TOLERANCE, "wrong vertices");
    countItems(state, state.range(0));
}
BENCHMARK(poseOurs)->Name("skinning/ours")->Apply(skinSizes);

void poseLimit(benchmark::State& state)
{
    const FlatSkin flat = makeFlatSkin(state.range(0), INFLUENCES, JOINTS);
    const std::vector<Eigen::Matrix4f> poses = posesOf(flat);
    std::vector<float> posed;
    for (auto _ : state)
    {
        posed = poseFlat(flat, poses);
        benchmark::DoNotOptimize(posed.data());
    }
    countItems(state, state.range(0));
}
BENCHMARK(poseLimit)->Name("skinning/limit")->Apply(skinSizes);

/// Size: influences of each vertex.
void poseInfluences(benchmark::State& state)
{
    const auto influences = static_cast<std::size_t>(state.range(0));
    const SkinnedScene scene(makeFlatSkin(100000, influences, JOINTS));
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(scene.pose());
    }
    countItems(state, 100000 * state.range(0));
}
BENCHMARK(poseInfluences)->Name("skinning/ours, by influences")->Apply(&atNAnd4N<4, 4>);

// Replacing joints. The rounds go there and back.

class Destinations
{
public:
    explicit Destinations(const FlatSkin& flat)
    {
        for (const float bend : {0.3F, -0.2F})
        {
            m_scenes.push_back(boost::make_shared<SceneManager>(core::event::EventManagerPtr()));
            const StreamPtr stream = boost::make_shared<Stream>("positions", 3, true);
            for (std::size_t i = 0; i < flat.locals.size(); ++i)
            {
                const auto along = static_cast<float>(i);
                const Eigen::Vector3f position(bend * along, along, i % 3 == 0 ? bend : 0.0F);
                stream->insertValue(3, position.data());
            }
            const MeshPtr mesh = boost::make_shared<Mesh>("joints", "");
            mesh->addVerticesMapping(StreamMapping(POSITION, stream, 0));
            m_scenes.back()->getGeometryManager()->addGeometry(mesh);
            m_positions.push_back(stream->getData());
        }
    }

    const SceneManagerPtr& scene(std::size_t round) const { return m_scenes[round % 2]; }
    const std::vector<float>& positions(std::size_t round) const { return m_positions[round % 2]; }

private:
    std::vector<SceneManagerPtr> m_scenes;
    std::vector<std::vector<float>> m_positions;
};

void replaceJoints(benchmark::State& state, const FlatSkin& flat)
{
    const SkinnedScene scene(flat);
    const Destinations destinations(flat);
    std::size_t round = 0;
    for (auto _ : state)
    {
        scene.manager->replaceJoints(destinations.scene(round));
        ++round;
    }
    std::vector<float> reached;
    for (const Eigen::Matrix4f& world : scene.joints.front()->getCombinedTransformationsBelow())
    {
        reached.insert(reached.end(), &world(0, 3), &world(0, 3) + 3);
    }
    const double missed = differenceOf(reached, destinations.positions(round - 1));
    require(state, missed < 10 * TOLERANCE, "wrong positions");
    countItems(state, static_cast<std::int64_t>(flat.locals.size()));
}

void replaceByJoints(benchmark::State& state)
{
    const auto joints = static_cast<std::size_t>(state.range(0));
    replaceJoints(state, makeFlatSkin(AVATAR_VERTICES, INFLUENCES, joints));
}
BENCHMARK(replaceByJoints)->Name("replaceJoints/ours, by joints")->Apply(&atNAnd4N<150, 20>);

void replaceByVertices(benchmark::State& state)
{
    replaceJoints(state, makeFlatSkin(state.range(0), INFLUENCES, AVATAR_JOINTS));
}
BENCHMARK(replaceByVertices)
    ->Name("replaceJoints/ours, by vertices")
    ->Apply(&atNAnd4N<AVATAR_VERTICES, 20>);

/// The least that can be done for a chain in flat arrays: turn, place, invert.
void replaceLimit(benchmark::State& state)
{
    const FlatSkin flat =
        makeFlatSkin(AVATAR_VERTICES, INFLUENCES, static_cast<std::size_t>(state.range(0)));
    const Destinations destinations(flat);
    std::vector<Eigen::Matrix4d> worlds(flat.locals.size(), Eigen::Matrix4d::Identity());
    std::vector<Eigen::Matrix4d> locals(worlds);
    std::size_t round = 0;
    for (auto _ : state)
    {
        const float* const to = destinations.positions(round).data();
        const float* const from = destinations.positions(round + 1).data();
        for (std::size_t i = 0; i < worlds.size(); ++i)
        {
            const std::size_t end = i + 1 < worlds.size() ? i + 1 : i;
            const Eigen::Vector3d oldBone =
                Eigen::Vector3f(Eigen::Vector3f(from + 3 * end) - Eigen::Vector3f(from + 3 * i))
                    .cast<double>();
            const Eigen::Vector3d newBone =
                Eigen::Vector3f(Eigen::Vector3f(to + 3 * end) - Eigen::Vector3f(to + 3 * i))
                    .cast<double>();
            worlds[i].topLeftCorner<3, 3>() =
                Eigen::Quaterniond::FromTwoVectors(oldBone, newBone).toRotationMatrix();
            worlds[i].topRightCorner<3, 1>() = Eigen::Vector3f(to + 3 * i).cast<double>();
            const Eigen::Matrix4d above =
                i == 0 ? Eigen::Matrix4d(Eigen::Matrix4d::Identity()) : worlds[i - 1];
            locals[i] = above.inverse() * worlds[i];
        }
        benchmark::DoNotOptimize(locals.data());
        ++round;
    }
    countItems(state, state.range(0));
}
BENCHMARK(replaceLimit)->Name("replaceJoints/limit")->Apply(&atNAnd4N<150, 20>);

// Morphing

void morph(benchmark::State& state, std::int64_t vertices, std::size_t joints)
{
    FlatSkin flat = makeFlatSkin(vertices, INFLUENCES, joints);
    const SkinnedScene avatar(flat);
    for (Eigen::Matrix4f& local : flat.locals)
    {
        local(1, 3) *= 1.5F;
    }
    const SkinnedScene target(flat);
    for (auto _ : state)
    {
        avatar.manager->morph(target.manager, 0.5F);
    }
    const double moved = differenceOf(avatar.pose()->getData(), avatar.vertices->getData());
    require(state, moved < 10 * TOLERANCE, "not bound");
}

void morphByJoints(benchmark::State& state)
{
    morph(state, AVATAR_VERTICES, static_cast<std::size_t>(state.range(0)));
    countItems(state, AVATAR_VERTICES);
}
BENCHMARK(morphByJoints)->Name("morph/ours, by joints")->Apply(&atNAnd4N<AVATAR_JOINTS, 10>);

void morphByVertices(benchmark::State& state)
{
    morph(state, state.range(0), AVATAR_JOINTS);
    countItems(state, state.range(0));
}
BENCHMARK(morphByVertices)->Name("morph/ours, by vertices")->Apply(&atNAnd4N<AVATAR_VERTICES, 10>);

/// `vertices` of two flat skins, posed and blended.
void morphFlat(benchmark::State& state, std::int64_t vertices, std::size_t joints)
{
    const FlatSkin flat = makeFlatSkin(vertices, INFLUENCES, joints);
    for (auto _ : state)
    {
        std::vector<float> own = poseFlat(flat, posesOf(flat));
        const std::vector<float> other = poseFlat(flat, posesOf(flat));
        for (std::size_t i = 0; i < own.size(); ++i)
        {
            own[i] = own[i] * 0.5F + other[i] * 0.5F;
        }
        benchmark::DoNotOptimize(own.data());
    }
    countItems(state, vertices);
}

void morphLimitByJoints(benchmark::State& state)
{
    morphFlat(state, AVATAR_VERTICES, static_cast<std::size_t>(state.range(0)));
}
BENCHMARK(morphLimitByJoints)->Name("morph/limit, by joints")->Apply(&atNAnd4N<AVATAR_JOINTS, 10>);

void morphLimitByVertices(benchmark::State& state)
{
    morphFlat(state, state.range(0), AVATAR_JOINTS);
}
BENCHMARK(morphLimitByVertices)
    ->Name("morph/limit, by vertices")
    ->Apply(&atNAnd4N<AVATAR_VERTICES, 10>);
} // namespace
} // namespace velmoran::bench
