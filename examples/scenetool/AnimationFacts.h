#pragma once

#include "examples/scenetool/SceneFacts.h"

#include <string>

namespace velmoran::examples
{
/// Adds "animation" to `facts` when the scene's animations have channels:
/// "channel_count", "channels_resolved_to_transformations", "first_key_time" and
/// "duration_last_key_time" of all channels (null without keys), "key_count_total",
/// "interpolations" (each name once, sorted) and "channels". Each of these has "target",
/// "sampler", "resolves_to" (a kind of transformation), "keys", "output_stride",
/// "first_time", "last_time", "first_value" and "last_value"; null is what the channel
/// lacks. Times are seconds.
void collectAnimation(const scene::SceneManagerPtr& scene, Json& facts);

/// "8 channels, 1448 keys from 0 to 7.5 s" from the "animation" of the facts, and what
/// does not fit the scene.
std::string describeAnimation(const Json& animation);
} // namespace velmoran::examples
