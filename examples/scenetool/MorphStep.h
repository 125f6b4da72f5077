#pragma once

#include "examples/scenetool/SceneLoader.h"

#include <Eigen/Core>

#include <string>
#include <vector>

namespace velmoran::examples
{
/// An avatar's skinned vertices and joints, in world space.
struct AvatarPose
{
    std::vector<Eigen::Vector3d> vertices; ///< empty without a skin
    std::vector<Eigen::Vector3d> joints;   ///< in the order of the scene
};

/// The avatar of a scene as it stands.
AvatarPose takeAvatarPose(const scene::SceneManagerPtr& scene);

/// Blends the avatar with `target`'s. Throws `CommandError` with the scene's message when it
/// can't.
void morphAvatar(const scene::SceneManagerPtr& avatar, const scene::SceneManagerPtr& target,
                 double ratio);

/// What keeps vertices or joints of `avatar` from blending with those of `target`, for the user.
/// Both have an avatar.
std::vector<std::string> findMismatches(const LoadedScene& avatar, const LoadedScene& target);
} // namespace velmoran::examples
