// Raising events: with and without listeners.

#include "bench/EventListener.h"

#include <boost/make_shared.hpp>

#include <functional>
#include <unordered_map>

namespace velmoran::bench
{
namespace
{
using core::event::Event;
using core::event::EventManager;
using core::event::EventType;

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

template <typename Argument>
void dispatchOurs(benchmark::State& state, const Names& names)
{
    const auto manager = boost::make_shared<EventManager>();
    const Listener<Argument> listener(manager);
    const std::vector<Event> events = makeEvents(names);
    raiseEvents(state, [&](std::size_t type) { manager->triggerEvent(events[type]); });
    const bool isHeard = names == HEARD;
    require(state, listener.length() == (isHeard ? lengthOfAll(state) : 0), "not as heard");
}
constexpr auto dispatchByValue = &dispatchOurs<Event>;
constexpr auto dispatchByReference = &dispatchOurs<const Event&>;
BENCHMARK_CAPTURE(dispatchByValue, heard, HEARD)->Name("event/ours, heard")->Apply(EVENTS);
BENCHMARK_CAPTURE(dispatchByReference, heard, HEARD)
    ->Name("event/ours, heard by reference")
    ->Apply(EVENTS);
BENCHMARK_CAPTURE(dispatchByValue, unheard, UNHEARD)->Name("event/ours, unheard")->Apply(EVENTS);

void dispatchOursFromText(benchmark::State& state, const Names& names)
{
    const auto manager = boost::make_shared<EventManager>();
    const Listener<> listener(manager);
    raiseEvents(state, [&](std::size_t type) { manager->triggerEvent(names[type], DATA); });
    const bool isHeard = names == HEARD;
    require(state, listener.length() == (isHeard ? lengthOfAll(state) : 0), "not as heard");
}
BENCHMARK_CAPTURE(dispatchOursFromText, heard, HEARD)
    ->Name("event/ours, from texts, heard")
    ->Apply(EVENTS);
BENCHMARK_CAPTURE(dispatchOursFromText, unheard, UNHEARD)
    ->Name("event/ours, from texts, unheard")
    ->Apply(EVENTS);

void dispatchHandlerMap(benchmark::State& state)
{
    std::size_t length = 0;
    const HandlerMap handlers(length);
    const std::vector<Event> events = makeEvents(HEARD);
    raiseEvents(state, [&](std::size_t type) { handlers.triggerEvent(events[type]); });
    require(state, length == lengthOfAll(state), "not as heard");
}
BENCHMARK(dispatchHandlerMap)->Name("event/limit")->Apply(EVENTS);

} // namespace
} // namespace velmoran::bench
