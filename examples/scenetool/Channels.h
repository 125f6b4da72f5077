#pragma once

#include "scene/Forward.h"

#include <string>
#include <vector>

namespace velmoran::examples
{
/// These animations and all below them, children behind their parents.
std::vector<scene::AnimationPtr> getAllAnimations(std::vector<scene::AnimationPtr> roots);

/// What the target of a channel names.
struct ChannelTarget
{
    scene::NodePtr node;                      ///< empty when the scene has none of that ID
    scene::ITransformationPtr transformation; ///< empty when the node has none of that SID
};

/// Looks up "ID/SID", with or without a member behind it: ".X", "(3)".
ChannelTarget findTarget(const scene::SceneManager& scene, const std::string& target);

/// The nodes of the scene, in its order, that have a transformation which a channel of
/// `animation` or of one below it names.
std::vector<scene::NodePtr> getAnimatedNodes(const scene::SceneManager& scene,
                                             const scene::AnimationPtr& animation);

/// One animation that has all of the scene's library as its children, to play them
/// together. Empty when the library is.
scene::AnimationPtr joinAnimations(const scene::SceneManager& scene);
} // namespace velmoran::examples
