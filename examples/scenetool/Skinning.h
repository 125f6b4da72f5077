#pragma once

#include "scene/Forward.h"

#include <Eigen/Core>

#include <optional>
#include <vector>

namespace velmoran::examples
{
/// A skin of a mesh where a node instances it.
struct SkinInstance
{
    scene::NodePtr node;
    scene::InstanceControllerPtr instance;
    scene::MeshPtr mesh;
    scene::SkinPtr skin;
    scene::StreamPtr positions; ///< of the mesh, in its own space
};

/// What a controller instance of `node` skins; nothing when it has no skin, or no mesh with
/// positions.
std::optional<SkinInstance> findSkin(const scene::NodePtr& node,
                                     const scene::InstanceControllerPtr& instance);

/// All skins that nodes of the scene instance, in its order.
std::vector<SkinInstance> findSkins(const scene::SceneManagerPtr& scene);

/// The nodes of the skin's joints, in the order of its bind matrices; empty where the scene has
/// none of that ID.
std::vector<scene::NodePtr> findJoints(const scene::SceneManagerPtr& scene,
                                       const SkinInstance& skin);

/// Whether the skin has all its lists and the scene all joints that influences name.
bool canBeSkinned(const scene::SceneManagerPtr& scene, const SkinInstance& skin);

/// The positions in the present pose, in world space. Linear in them and their influences.
scene::StreamPtr skinPositions(const scene::SceneManagerPtr& scene, const SkinInstance& skin);

/// What the present pose does to directions at each position: the linear part of its matrix.
std::vector<Eigen::Matrix3d> skinDirections(const scene::SceneManagerPtr& scene,
                                            const SkinInstance& skin);

/// The tuples of `positions` as they were bound to the skeleton, in world space.
std::vector<Eigen::Vector3d> getBoundPoints(const SkinInstance& skin);

/// The first three floats of each tuple, zeros for those that it lacks.
std::vector<Eigen::Vector3d> getPoints(const scene::Stream& stream);

/// The largest distance between points of the same place, and that place; of lists of
/// different lengths what both have. A place whose distance is no number counts as the largest.
struct Displacement
{
    double distance = 0.0;
    std::size_t place = 0;
};
Displacement findLargestDisplacement(const std::vector<Eigen::Vector3d>& from,
                                     const std::vector<Eigen::Vector3d>& to);
} // namespace velmoran::examples
