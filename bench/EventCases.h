#pragma once

#include "bench/Cases.h"
#include "core/event/Event.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace velmoran::bench
{
inline constexpr std::size_t TYPES = 10;
using Names = std::array<const char*, TYPES>;

inline constexpr Names HEARD = {
    "SceneTopologyUpdate", "NodeTransformationUpdate", "SceneUpdate",         "NodeAddedLayer",
    "NodeRemovedLayer",    "NodeAddedLight",           "NodeMaterialChanged", "CameraUpdated",
    "LightUpdated",        "GeometryTopologyUpdate"};
inline constexpr Names UNHEARD = {"SyncScene",        "SceneSurroundingUpdate", "SceneNewCamera",
                                  "DisplayMessageAt", "SelectionChanged",       "PlaybackStarted",
                                  "PlaybackStopped",  "DocumentStored",         "ToolbarRearranged",
                                  "PreferencesUpdate"};
inline constexpr const char* DATA = "NodeAdded,part-000001,part-000017";

/// A million and four millions.
constexpr auto EVENTS = &atNAnd4N<1000000>;

inline std::vector<core::event::Event> makeEvents(const Names& names)
{
    using namespace core::event;
    std::vector<Event> events;
    for (const char* const name : names)
    {
        events.emplace_back(EventType(name), EventData(DATA), "");
    }
    return events;
}

struct TypeHash
{
    std::size_t operator()(const core::event::EventType& type) const { return type.getHash(); }
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

/// Of the data of all events that `raiseEvents` has raised.
inline std::size_t lengthOfAll(const benchmark::State& state)
{
    return static_cast<std::size_t>(state.iterations() * state.range(0)) * std::string(DATA).size();
}
} // namespace velmoran::bench
