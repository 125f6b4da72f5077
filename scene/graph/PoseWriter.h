#pragma once

#include "scene/Forward.h"
#include "scene/graph/Node.h"

#include <Eigen/Core>

namespace velmoran::scene
{
/// Writes poses into many nodes: `Node::setTransformations` and `Node::setScale` for each,
/// with two pairs of events.
///
/// Asks once, when it is made, whether anybody listens to these events. If nobody does,
/// nodes of its scene are written without asking for scene and listeners at each node.
class PoseWriter
{
public:
    /// For the nodes of `scene`, which may be empty.
    explicit PoseWriter(const ISceneContextPtr& scene);

    /// Whether `node` was made for `scene`; never changes.
    static bool belongsTo(const ISceneContextPtr& scene, const Node& node);

    /// Whether the events of the scene's nodes reach nobody.
    bool isSilent() const { return m_silent; }

    /// Sets T and R from `matrix`, S to `scale`; a pair of events follows each.
    static void write(Node& node, const Eigen::Matrix4f& matrix, const Eigen::Vector3f& scale);

    /// The same without events, for a node of the scene when `isSilent`; nothing else runs
    /// meanwhile. `matrix` is affine, its first three columns of unit length; the fourth
    /// number of `scale` is not used.
    static void writeSilently(Node& node, const Eigen::Matrix4f& matrix,
                              const Eigen::Vector4f& scale);

    /// Asks for the memory that `writeSilently` will write soon.
    static void prefetch([[maybe_unused]] const Node& node)
    {
#if defined(__GNUC__)
        const auto* const address = reinterpret_cast<const char*>(&node.m_translation);
        __builtin_prefetch(address, 1);
        __builtin_prefetch(address + 64, 1);
        __builtin_prefetch(address + 128, 1);
#endif
    }

private:
    bool m_silent;
};
} // namespace velmoran::scene
