// Playing animations: one turn over nodes that are driven by matrix keys.

#include "bench/Allocations.h"
#include "bench/AnimationCases.h"
#include "core/event/EventBase.h"
#include "core/event/EventManager.h"
#include "core/utils/Matrix.h"
#include "scene/EventTypes.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <random>
#include <string>

namespace velmoran::bench
{
namespace
{
constexpr std::size_t KEYS = 100;
constexpr std::size_t MANY_KEYS = 10000;

/// Few enough nodes for many keys.
void atFewNodes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(40)->Iterations(128)->Unit(benchmark::kMillisecond);
}

using RowMatrix = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;

/// The keys of node `index`, as `Animation::insertKeyFrame` leaves them.
void addChild(scene::Animation& animation, const FlatAnimation& flat, std::size_t index,
              const std::string& nodeID)
{
    const auto transformation = boost::make_shared<scene::TransformationMatrix>();
    const scene::SamplerPtr sampler =
        animation.getChannel(nodeID, nodeID + "/transform", transformation);
    std::vector<float> values;
    for (std::size_t i = index * flat.times.size(); i < (index + 1) * flat.times.size(); ++i)
    {
        Eigen::Affine3f key = Eigen::Affine3f::Identity();
        key.translate(flat.translations[i]);
        key.rotate(flat.rotations[i]);
        key.scale(flat.scales[i]);
        const RowMatrix rows = key.matrix();
        values.insert(values.end(), rows.data(), rows.data() + rows.size());
    }
    sampler->getStreamBySemantic(scene::Sampler::INPUT)->setData(flat.times);
    sampler->getStreamBySemantic(scene::Sampler::OUTPUT)->setData(std::move(values));
    sampler->getStreamBySemantic(scene::Sampler::INTERPOLATION)
        ->setNameList(std::vector<std::string>(flat.times.size(), "LINEAR"));
}

/// A scene with a keyed node for each of `flat`, and a manager of our own that plays it:
/// the scene's worker does not.
struct PlayedScene
{
    explicit PlayedScene(const FlatAnimation& flat)
        : eventManager(boost::make_shared<core::event::EventManager>()),
          scene(boost::make_shared<scene::SceneManager>(eventManager)),
          manager(boost::make_shared<scene::AnimationManager>()),
          animation(boost::make_shared<scene::Animation>("played", ""))
    {
        for (std::size_t i = 0; i < flat.nodes; ++i)
        {
            const auto node = boost::make_shared<scene::Node>(scene);
            node->setID("joint-" + std::to_string(i));
            const auto matrix = boost::make_shared<scene::TransformationMatrix>();
            matrix->setSid("transform");
            node->setOriginalTransformations({matrix});
            scene->getRoot()->addNode(node);
            addChild(*animation, flat, i, node->getID());
        }
        manager->attach(scene);
        manager->setAnimation(animation);
    }

    void tick() { manager->update(boost::posix_time::microseconds(TICK_MICROSECONDS)); }

    bool hasLocals(const std::vector<Eigen::Matrix4f>& locals) const
    {
        std::size_t i = 0;
        return std::all_of(locals.begin(), locals.end(),
                           [&](const Eigen::Matrix4f& local)
                           {
                               const Eigen::Matrix4f& own =
                                   scene->getRoot()
                                       ->getChildNode(static_cast<unsigned int>(i++))
                                       ->getTransformations();
                               return own.isApprox(local, 1e-4F);
                           });
    }

    core::event::EventManagerPtr eventManager;
    scene::SceneManagerPtr scene;
    scene::AnimationManagerPtr manager;
    scene::AnimationPtr animation;
};

/// Listens to every event of an animated node and reads its data.
class PoseListener : public core::event::EventBase
{
public:
    explicit PoseListener(const core::event::EventManagerPtr& manager) : EventBase(manager)
    {
        for (const core::event::EventType& type :
             {scene::events::nodeTransformationUpdate(), scene::events::sceneUpdate()})
        {
            registerHandler(type, [this](core::event::Event event)
                            { m_length += event.getEventData().getData().size(); });
        }
    }
    ~PoseListener() override { setEventManager(core::event::EventManagerPtr()); }

    std::size_t length() const { return m_length; }

private:
    std::size_t m_length = 0;
};

/// Times rounds of `tick` after a first one. Answers how often they took memory.
template <typename Tick>
std::uint64_t playRounds(benchmark::State& state, const FlatAnimation& flat, Tick tick)
{
    tick();
    const std::uint64_t before = countAllocations();
    for (auto _ : state)
    {
        for (int i = 0; i < TICKS; ++i)
        {
            tick();
        }
    }
    const std::uint64_t allocations = countAllocations() - before;
    countItems(state, TICKS * static_cast<std::int64_t>(flat.nodes));
    return allocations;
}

/// Where the playhead of a player stands after the turns of `playRounds`.
float timeAfter(const benchmark::State& state, const FlatAnimation& flat)
{
    Playhead playhead(flat);
    for (std::int64_t i = 0; i < state.iterations() * TICKS; ++i)
    {
        playhead.advance();
    }
    return playhead.advance();
}

void requireLocals(benchmark::State& state, const FlatAnimation& flat, const PlayedScene& played)
{
    FlatPlayer player(flat);
    player.evaluate(timeAfter(state, flat));
    require(state, played.hasLocals(player.locals()), "wrong matrices");
}

void playOurs(benchmark::State& state, std::size_t keys)
{
    const FlatAnimation& flat = animationOf(state.range(0), keys);
    PlayedScene played(flat);
    const std::uint64_t allocations = playRounds(state, flat, [&] { played.tick(); });
    require(state, allocations == 0, "a turn without listeners has taken memory");
    requireLocals(state, flat, played);
}
BENCHMARK_CAPTURE(playOurs, unheard, KEYS)->Name("play/ours, unheard")->Apply(atNAnd4N<1000, 8>);
BENCHMARK_CAPTURE(playOurs, few, KEYS)->Name("play/ours, 100 keys")->Apply(atFewNodes);
BENCHMARK_CAPTURE(playOurs, many, MANY_KEYS)->Name("play/ours, 10,000 keys")->Apply(atFewNodes);

void playOursHeard(benchmark::State& state)
{
    const FlatAnimation& flat = animationOf(state.range(0), KEYS);
    PlayedScene played(flat);
    const PoseListener listener(played.eventManager);
    playRounds(state, flat, [&] { played.tick(); });
    require(state, listener.length() > 0, "nothing heard");
    requireLocals(state, flat, played);
}
BENCHMARK(playOursHeard)->Name("play/ours, heard")->Apply(atNAnd4N<1000>);

void playLimit(benchmark::State& state)
{
    const FlatAnimation& flat = animationOf(state.range(0), KEYS);
    FlatPlayer player(flat);
    Playhead playhead(flat);
    playRounds(state, flat, [&] { player.evaluate(playhead.advance()); });
    FlatPlayer other(flat);
    other.evaluate(timeAfter(state, flat));
    require(state, other.locals().back() == player.locals().back(), "wrong matrices");
}
BENCHMARK(playLimit)->Name("play/limit")->Apply(atNAnd4N<1000, 8>);

/// The call that answers maps of matrices.
void playIntoMap(benchmark::State& state)
{
    const FlatAnimation& flat = animationOf(state.range(0), KEYS);
    PlayedScene played(flat);
    scene::AnimationManager::EvaluatedTransformations out;
    Playhead playhead(flat);
    playRounds(state, flat,
               [&]
               {
                   const auto milliseconds = static_cast<long>(playhead.advance() * 1000.0 + 0.5);
                   played.manager->setTime(boost::posix_time::milliseconds(milliseconds));
                   played.manager->playAnimation(played.animation, out);
               });
    require(state, out.size() == flat.nodes, "wrong size");
}
BENCHMARK(playIntoMap)->Name("play/ours, into a map")->Apply(atNAnd4N<1000>);

/// Jumps to random moments, so that every search for a key starts elsewhere.
void seekOurs(benchmark::State& state, std::size_t keys)
{
    const FlatAnimation& flat = animationOf(state.range(0), keys);
    PlayedScene played(flat);
    std::mt19937 random(1);
    std::uniform_int_distribution<int> moment(0, static_cast<int>(flat.times.back() * 1000.0F) - 1);
    playRounds(state, flat,
               [&]
               {
                   played.manager->setTime(boost::posix_time::milliseconds(moment(random)));
                   played.manager->update(boost::posix_time::time_duration());
               });
}
BENCHMARK_CAPTURE(seekOurs, few, KEYS)->Name("seek/ours, 100 keys")->Apply(atFewNodes)->Arg(160);
BENCHMARK_CAPTURE(seekOurs, many, MANY_KEYS)->Name("seek/ours, 10,000 keys")->Apply(atFewNodes);
} // namespace
} // namespace velmoran::bench
