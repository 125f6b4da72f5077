#pragma once

#include "scene/manager/SceneManager.h"

#include <string>

namespace velmoran::scene
{
/// How the objects of a scene are told apart in its text.
enum class Objects
{
    BY_ADDRESS, ///< for one scene at two moments
    BY_NUMBER   ///< for two scenes, in the order of meeting
};

/// All that can be asked about a scene: tree, libraries, geometry, layers, playback.
std::string toText(SceneManager& scene, Objects objects);
} // namespace velmoran::scene
