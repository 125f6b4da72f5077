// Raising events: with and without listeners, and the text of a matrix.

#include "bench/Cases.h"
#include "core/event/EventBase.h"
#include "core/event/EventManager.h"
#include "core/utils/Matrix.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Geometry>
#include <boost/make_shared.hpp>
#include <boost/signals2/signal.hpp>

#include <array>
#include <charconv>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace velmoran::bench
{
namespace
{
using core::event::Event;
using core::event::EventBase;
using core::event::EventData;
using core::event::EventManager;
using core::event::EventType;

constexpr auto SIZES = &atNAnd4N<1000000>;

constexpr std::size_t TYPES = 10;
using Names = std::array<const char*, TYPES>;

constexpr Names HEARD = {
    "SceneTopologyUpdate", "NodeTransformationUpdate", "SceneUpdate",         "NodeAddedLayer",
    "NodeRemovedLayer",    "NodeAddedLight",           "NodeMaterialChanged", "CameraUpdated",
    "LightUpdated",        "GeometryTopologyUpdate"};
constexpr Names UNHEARD = {"SyncScene",        "SceneSurroundingUpdate", "SceneNewCamera",
                           "DisplayMessageAt", "SelectionChanged",       "PlaybackStarted",
                           "PlaybackStopped",  "DocumentStored",         "ToolbarRearranged",
                           "PreferencesUpdate"};
constexpr const char* DATA = "NodeAdded,part-000001,part-000017";

std::vector<Event> makeEvents(const Names& names)
{
    std::vector<Event> events;
    for (const char* const name : names)
    {
        events.emplace_back(EventType(name), EventData(DATA), "");
    }
    return events;
}

struct TypeHash
{
    std::size_t operator()(const EventType& type) const { return type.getHash(); }
};

/// Listens to all heard types with handlers that take the event by value.
class Listener : public EventBase
{
public:
    explicit Listener(const boost::shared_ptr<EventManager>& manager) : EventBase(manager)
    {
        for (const char* const name : HEARD)
        {
            registerHandler(EventType(name), [this](Event event)
                            { m_length += event.getEventData().getData().size(); });
        }
    }

    ~Listener() override { setEventManager(boost::shared_ptr<EventManager>()); }

    /// All data heard so far.
    std::size_t length() const { return m_length; }

private:
    std::size_t m_length = 0;
};

/// Other people's signals, one for each type, found by the type of the event.
class Signals
{
public:
    explicit Signals(std::size_t& length)
    {
        for (const char* const name : HEARD)
        {
            m_signals[EventType(name)].connect(
                [&length](Event event) { length += event.getEventData().getData().size(); });
        }
    }

    void triggerEvent(Event event) const
    {
        const auto found = m_signals.find(event.getEventType());
        if (found != m_signals.end())
        {
            found->second(event);
        }
    }

    void triggerEvent(std::string type, std::string data) const
    {
        triggerEvent(Event(EventType(std::move(type)), EventData(std::move(data)), ""));
    }

private:
    std::unordered_map<EventType, boost::signals2::signal<void(Event)>, TypeHash> m_signals;
};

/// A map from type to handler that no second thread may use. The event is handed on
/// by reference.
class HandlerMap
{
public:
    explicit HandlerMap(std::size_t& length)
    {
        for (const char* const name : HEARD)
        {
            m_handlers[EventType(name)] = [&length](const Event& event)
            { length += event.getEventData().getData().size(); };
        }
    }

    void triggerEvent(const Event& event) const
    {
        const auto found = m_handlers.find(event.getEventType());
        if (found != m_handlers.end())
        {
            found->second(event);
        }
    }

private:
    std::unordered_map<EventType, std::function<void(const Event&)>, TypeHash> m_handlers;
};

/// Raises a million events of the given types in turn.
template <typename Raise>
void raiseEvents(benchmark::State& state, Raise raise)
{
    const std::int64_t turns = state.range(0) / static_cast<std::int64_t>(TYPES);
    for (auto _ : state)
    {
        for (std::int64_t turn = 0; turn < turns; ++turn)
        {
            for (std::size_t type = 0; type < TYPES; ++type)
            {
                raise(type);
            }
        }
    }
    countItems(state, state.range(0));
}

std::size_t lengthOfAll(const benchmark::State& state)
{
    return static_cast<std::size_t>(state.iterations() * state.range(0)) * std::string(DATA).size();
}

void dispatchOurs(benchmark::State& state, const Names& names)
{
    const auto manager = boost::make_shared<EventManager>();
    const Listener listener(manager);
    const std::vector<Event> events = makeEvents(names);
    raiseEvents(state, [&](std::size_t type) { manager->triggerEvent(events[type]); });
    const bool isHeard = names == HEARD;
    require(state, listener.length() == (isHeard ? lengthOfAll(state) : 0), "not as heard");
}
BENCHMARK_CAPTURE(dispatchOurs, heard, HEARD)->Name("event/ours, heard")->Apply(SIZES);
BENCHMARK_CAPTURE(dispatchOurs, unheard, UNHEARD)->Name("event/ours, unheard")->Apply(SIZES);

void dispatchOursFromText(benchmark::State& state, const Names& names)
{
    const auto manager = boost::make_shared<EventManager>();
    const Listener listener(manager);
    raiseEvents(state, [&](std::size_t type) { manager->triggerEvent(names[type], DATA); });
    const bool isHeard = names == HEARD;
    require(state, listener.length() == (isHeard ? lengthOfAll(state) : 0), "not as heard");
}
BENCHMARK_CAPTURE(dispatchOursFromText, heard, HEARD)
    ->Name("event/ours, from texts, heard")
    ->Apply(SIZES);
BENCHMARK_CAPTURE(dispatchOursFromText, unheard, UNHEARD)
    ->Name("event/ours, from texts, unheard")
    ->Apply(SIZES);

void dispatchSignals(benchmark::State& state)
{
    std::size_t length = 0;
    const Signals signals(length);
    const std::vector<Event> events = makeEvents(HEARD);
    raiseEvents(state, [&](std::size_t type) { signals.triggerEvent(events[type]); });
    require(state, length == lengthOfAll(state), "not as heard");
}
BENCHMARK(dispatchSignals)->Name("event/Boost.Signals2 by type")->Apply(SIZES);

void dispatchSignalsFromText(benchmark::State& state)
{
    std::size_t length = 0;
    const Signals signals(length);
    raiseEvents(state, [&](std::size_t type) { signals.triggerEvent(HEARD[type], DATA); });
    require(state, length == lengthOfAll(state), "not as heard");
}
BENCHMARK(dispatchSignalsFromText)->Name("event/Boost.Signals2 by type, from texts")->Apply(SIZES);

void dispatchBareSignal(benchmark::State& state)
{
    std::size_t length = 0;
    std::array<boost::signals2::signal<void(Event)>, TYPES> signals;
    for (auto& signal : signals)
    {
        signal.connect([&length](Event event) { length += event.getEventData().getData().size(); });
    }
    const std::vector<Event> events = makeEvents(HEARD);
    raiseEvents(state, [&](std::size_t type) { signals[type](events[type]); });
    require(state, length == lengthOfAll(state), "not as heard");
}
BENCHMARK(dispatchBareSignal)->Name("event/Boost.Signals2 without look-up")->Apply(SIZES);

void dispatchHandlerMap(benchmark::State& state)
{
    std::size_t length = 0;
    const HandlerMap handlers(length);
    const std::vector<Event> events = makeEvents(HEARD);
    raiseEvents(state, [&](std::size_t type) { handlers.triggerEvent(events[type]); });
    require(state, length == lengthOfAll(state), "not as heard");
}
BENCHMARK(dispatchHandlerMap)->Name("event/limit")->Apply(SIZES);

// Text of a matrix

constexpr auto TEXTS = &atNAnd4N<10000>;

std::vector<core::utils::Matrix> makeMatrices(std::int64_t count)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> any(-1.0F, 1.0F);
    std::vector<core::utils::Matrix> matrices;
    for (std::int64_t i = 0; i < count; ++i)
    {
        const Eigen::Vector3f axis(any(random), any(random), any(random));
        Eigen::Affine3f matrix(Eigen::AngleAxisf(3.0F * any(random), axis.normalized()));
        matrix.pretranslate(Eigen::Vector3f(any(random), 10.0F * any(random), 100.0F));
        matrices.emplace_back(matrix.data());
    }
    return matrices;
}

template <typename MakeText>
void makeTexts(benchmark::State& state, MakeText makeText)
{
    const std::vector<core::utils::Matrix> matrices = makeMatrices(state.range(0));
    std::string text;
    for (auto _ : state)
    {
        for (const core::utils::Matrix& matrix : matrices)
        {
            text = makeText(matrix.getMatrix());
            benchmark::DoNotOptimize(text.data());
        }
    }
    const char* next = text.c_str();
    for (int i = 0; i < 16; ++i)
    {
        char* end = nullptr;
        require(state, std::strtof(next, &end) == matrices.back()[i], "wrong text");
        next = end + 1;
    }
    countItems(state, state.range(0));
}

void textOurs(benchmark::State& state)
{
    makeTexts(state,
              [](const float* matrix) { return core::utils::Matrix(matrix).toEventDataString(); });
}
BENCHMARK(textOurs)->Name("matrix text/ours")->Apply(TEXTS);

void textSnprintf(benchmark::State& state)
{
    makeTexts(state,
              [](const float* matrix)
              {
                  char text[512];
                  std::array<double, 16> m;
                  std::copy_n(matrix, 16, m.begin());
                  std::snprintf(text, sizeof text,
                                "%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,"
                                "%.9g,%.9g,%.9g,%.9g",
                                m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8], m[9], m[10],
                                m[11], m[12], m[13], m[14], m[15]);
                  return std::string(text);
              });
}
BENCHMARK(textSnprintf)->Name("matrix text/snprintf")->Apply(TEXTS);

void textToChars(benchmark::State& state)
{
    makeTexts(state,
              [](const float* matrix)
              {
                  char text[512];
                  char* next = text;
                  for (int i = 0; i < 16; ++i)
                  {
                      next = std::to_chars(next, text + sizeof text, matrix[i]).ptr;
                      *next++ = ',';
                  }
                  return std::string(text, next - 1);
              });
}
BENCHMARK(textToChars)->Name("matrix text/limit")->Apply(TEXTS);

// Moving a node

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
    const auto manager = boost::make_shared<EventManager>();
    const auto scene = boost::make_shared<scene::SceneManager>(manager);
    const auto node = boost::make_shared<scene::Node>(scene);
    scene->getRoot()->addNode(node);
    const Listener listener(isHeard ? manager : boost::shared_ptr<EventManager>());
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
