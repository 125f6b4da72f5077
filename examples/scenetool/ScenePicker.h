#pragma once

#include "scene/Forward.h"

#include <Eigen/Core>
#include <boost/optional.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace velmoran::examples
{
/// What a ray meets first.
struct Pick
{
    std::string geometryID;
    double distance = 0.0; ///< from the ray's origin, in units of the scene
    Eigen::Vector3d point = Eigen::Vector3d::Zero();
    std::vector<Eigen::Vector3d> corners; ///< of the face, in world space
};

/// Finds what rays meet in a scene as it is when this is made: the triangles of the meshes that
/// nodes instance. What only a skin places is not met.
class ScenePicker
{
public:
    explicit ScenePicker(const scene::SceneManagerPtr& scene);

    /// Nothing when the ray meets none, or has no direction.
    boost::optional<Pick> pick(const Eigen::Vector3d& origin,
                               const Eigen::Vector3d& direction) const;

    /// How long collecting and sorting the triangles took.
    double getBuildSeconds() const { return m_buildSeconds; }

    /// The cells that they were sorted into.
    std::size_t countCells() const;

private:
    boost::shared_ptr<scene::Octree> m_octree;
    double m_buildSeconds = 0.0;
};
} // namespace velmoran::examples
