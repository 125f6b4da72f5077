// Moving a node, with and without a listener.

#include "bench/EventListener.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Geometry>
#include <boost/make_shared.hpp>

namespace velmoran::bench
{
namespace
{
constexpr auto MOVES = &atNAnd4N<100000>;

template <typename Move>
void moveNode(benchmark::State& state, Move move)
{
    for (auto _ : state)
    {
        for (std::int64_t i = 0; i < state.range(0); ++i)
        {
            move(Eigen::Vector3f(0.1F * static_cast<float>(i), 1.0F, 2.0F));
        }
    }
    countItems(state, state.range(0));
}

void moveOurs(benchmark::State& state, bool isHeard)
{
    const auto manager = boost::make_shared<core::event::EventManager>();
    const auto scene = boost::make_shared<scene::SceneManager>(manager);
    const auto node = boost::make_shared<scene::Node>(scene);
    scene->getRoot()->addNode(node);
    const Listener<> listener(isHeard ? manager : core::event::EventManagerPtr());
    moveNode(state, [&](const Eigen::Vector3f& to)
             { node->setTranslation(Eigen::Translation<float, 3>(to)); });
    require(state, (listener.length() != 0) == isHeard, "not as heard");
}
BENCHMARK_CAPTURE(moveOurs, heard, true)->Name("setTranslation/ours, heard")->Apply(MOVES);
BENCHMARK_CAPTURE(moveOurs, unheard, false)->Name("setTranslation/ours, unheard")->Apply(MOVES);

void moveFlat(benchmark::State& state)
{
    Eigen::Matrix3f rotation = Eigen::Matrix3f::Identity();
    Eigen::Vector3f scale = Eigen::Vector3f::Ones();
    Eigen::Matrix4f local = Eigen::Matrix4f::Identity();
    benchmark::DoNotOptimize(rotation);
    benchmark::DoNotOptimize(scale);
    moveNode(state,
             [&](const Eigen::Vector3f& to)
             {
                 local.topLeftCorner<3, 3>() = rotation * scale.asDiagonal();
                 local.topRightCorner<3, 1>() = to;
                 benchmark::DoNotOptimize(local);
             });
}
BENCHMARK(moveFlat)->Name("setTranslation/limit")->Apply(MOVES);
} // namespace
} // namespace velmoran::bench
