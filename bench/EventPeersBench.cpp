// Raising events: other people's signals, found by the type of the event, and plain calls.

#include "bench/EventCases.h"

#include <boost/signals2/dummy_mutex.hpp>
#include <boost/signals2/signal.hpp>
#include <boost/signals2/signal_type.hpp>

#ifdef VELMORAN_BENCH_SIGC
#include <sigc++/signal.h>
#endif

#include <functional>
#include <map>
#include <unordered_map>

namespace velmoran::bench
{
namespace
{
using core::event::Event;
using core::event::EventData;
using core::event::EventType;
namespace signals2 = boost::signals2;

/// A signal for each type.
template <typename Signal>
class Signals
{
public:
    template <typename Handler>
    explicit Signals(const Handler& handler)
    {
        for (const char* const name : HEARD)
        {
            m_signals[EventType(name)].connect(handler);
        }
    }

    void triggerEvent(const Event& event)
    {
        const auto found = m_signals.find(event.getEventType());
        if (found != m_signals.end())
        {
            found->second(event);
        }
    }

    void triggerEvent(std::string type, std::string data)
    {
        triggerEvent(Event(EventType(std::move(type)), EventData(std::move(data)), ""));
    }

private:
    std::unordered_map<EventType, Signal, TypeHash> m_signals;
};

/// Raises events through `Signal`, whose handlers take them as `Argument`.
template <typename Signal, typename Argument>
void dispatchSignals(benchmark::State& state)
{
    std::size_t length = 0;
    Signals<Signal> signals([&length](Argument event)
                            { length += event.getEventData().getData().size(); });
    const std::vector<Event> events = makeEvents(HEARD);
    raiseEvents(state, [&](std::size_t type) { signals.triggerEvent(events[type]); });
    require(state, length == lengthOfAll(state), "not as heard");
}

using ByValue = signals2::signal<void(Event)>;
using ByReference = signals2::signal<void(const Event&)>;
using Unlocked =
    signals2::signal_type<void(Event), signals2::keywords::mutex_type<signals2::dummy_mutex>>::type;

BENCHMARK_TEMPLATE(dispatchSignals, ByValue, Event)
    ->Name("event/Boost.Signals2 by type")
    ->Apply(EVENTS);
BENCHMARK_TEMPLATE(dispatchSignals, ByReference, const Event&)
    ->Name("event/Boost.Signals2 by type and reference")
    ->Apply(EVENTS);
BENCHMARK_TEMPLATE(dispatchSignals, Unlocked, Event)
    ->Name("event/Boost.Signals2 by type, dummy mutex")
    ->Apply(EVENTS);
#ifdef VELMORAN_BENCH_SIGC
BENCHMARK_TEMPLATE(dispatchSignals, sigc::signal<void(Event)>, Event)
    ->Name("event/libsigc++ by type")
    ->Apply(EVENTS);
#endif

void dispatchSignalsFromText(benchmark::State& state)
{
    std::size_t length = 0;
    Signals<ByValue> signals([&length](Event event)
                             { length += event.getEventData().getData().size(); });
    raiseEvents(state, [&](std::size_t type) { signals.triggerEvent(HEARD[type], DATA); });
    require(state, length == lengthOfAll(state), "not as heard");
}
BENCHMARK(dispatchSignalsFromText)->Name("event/Boost.Signals2 by type, from texts")->Apply(EVENTS);

void dispatchBareSignal(benchmark::State& state)
{
    std::size_t length = 0;
    std::array<ByValue, TYPES> signals;
    for (ByValue& signal : signals)
    {
        signal.connect([&length](Event event) { length += event.getEventData().getData().size(); });
    }
    const std::vector<Event> events = makeEvents(HEARD);
    raiseEvents(state, [&](std::size_t type) { signals[type](events[type]); });
    require(state, length == lengthOfAll(state), "not as heard");
}
BENCHMARK(dispatchBareSignal)->Name("event/Boost.Signals2 without look-up")->Apply(EVENTS);

/// One handler for all types, known to whoever raises the event.
void callDirectly(benchmark::State& state)
{
    std::size_t length = 0;
    const std::function<void(const Event&)> handler = [&length](const Event& event)
    { length += event.getEventData().getData().size(); };
    const std::vector<Event> events = makeEvents(HEARD);
    raiseEvents(state, [&](std::size_t type) { handler(events[type]); });
    require(state, length == lengthOfAll(state), "not as heard");
}
BENCHMARK(callDirectly)->Name("event/direct call")->Apply(EVENTS);

/// An event that owns its texts.
struct TextEvent
{
    std::string type;
    std::string data;
    std::string source;
};

/// Texts and handlers are copied for every event, so that handlers may change both.
void dispatchCopies(benchmark::State& state)
{
    using Handler = std::function<void(TextEvent)>;
    std::size_t length = 0;
    std::map<std::string, std::vector<Handler>> handlers;
    for (const char* const name : HEARD)
    {
        handlers[name].push_back([&length](TextEvent event) { length += event.data.size(); });
    }
    raiseEvents(state,
                [&](std::size_t type)
                {
                    const TextEvent event{HEARD[type], DATA, ""};
                    const std::vector<Handler> called = handlers[event.type];
                    for (const Handler& handler : called)
                    {
                        handler(event);
                    }
                });
    require(state, length == lengthOfAll(state), "not as heard");
}
BENCHMARK(dispatchCopies)->Name("event/handlers and texts copied")->Apply(EVENTS);
} // namespace
} // namespace velmoran::bench
