#pragma once

#include "scene/Forward.h"
#include "scene/graph/Node.h"

#include <Eigen/Core>

namespace velmoran::scene
{
/// Writes poses into many nodes: `Node::setTransformations` and `Node::setScale` for each,
/// with two pairs of events.
///
/// Asks once, when it is made, whether anybody listens to these events. Nodes of its
/// scene are then written without asking for the scene and its listeners at each node.
class PoseWriter
{
public:
    /// For the nodes of `scene`, which may be empty.
    explicit PoseWriter(const ISceneContextPtr& scene);

    /// Whether a node's events reach nobody, so that nothing else runs while it is written.
    bool isSilentFor(const Node& node) const { return m_silent && belongsToScene(node); }

    /// Sets T and R from `matrix`, S to `scale`. One pair of events follows each.
    void write(Node& node, const Eigen::Matrix4f& matrix, const Eigen::Vector3f& scale) const;

private:
    bool belongsToScene(const Node& node) const;

    ISceneContextPtr m_scene;
    bool m_silent;
};
} // namespace velmoran::scene
