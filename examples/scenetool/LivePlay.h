#pragma once

#include "examples/scenetool/Console.h"
#include "examples/scenetool/SceneFacts.h"

#include <cstddef>
#include <map>
#include <string>

namespace velmoran::examples
{
/// What was heard while a scene played.
struct LiveResult
{
    double seconds = 0.0;                      ///< how long it played
    std::map<std::string, std::size_t> events; ///< by name
};

/// Lets the scene's worker play `animation` from its start for `seconds`, in a loop, and
/// counts the events. Shows a bar, headed `task`, where errors go if that is a terminal.
/// The scene has an event manager and an animation manager, which is paused then.
LiveResult playLive(const scene::SceneManagerPtr& scene, const scene::AnimationPtr& animation,
                    double seconds, const std::string& task, const Console& console);

/// A table of the events and their rates.
void printLive(const LiveResult& result, std::ostream& out);

/// "live_seconds", "event_count", "events_per_second", and "events" with the same two
/// for each name.
Json collectLive(const LiveResult& result);
} // namespace velmoran::examples
