#pragma once

#include "scene/Forward.h"

#include <Eigen/Geometry>

#include <vector>

namespace velmoran::examples
{
/// Remembers how all nodes of a scene stand, each relative to its parent.
class PoseKeeper
{
public:
    explicit PoseKeeper(const scene::SceneManagerPtr& scene);

    /// Puts the nodes back to where they stood.
    void apply() const;

    /// The largest difference between an element of a node's local matrix here and there.
    /// `other` is of the same scene, whose nodes have not changed.
    float getDistance(const PoseKeeper& other) const;

private:
    struct Entry
    {
        scene::NodePtr node;
        Eigen::Translation3f translation;
        Eigen::Matrix4f rotation;
        Eigen::Vector3f scale;
        Eigen::Matrix4f local;
    };

    std::vector<Entry> m_entries; ///< in the order of the scene
};
} // namespace velmoran::examples
