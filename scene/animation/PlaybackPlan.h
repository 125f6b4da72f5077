#pragma once

#include "scene/Forward.h"
#include "scene/animation/ChannelBinding.h"
#include "scene/animation/ListTrack.h"
#include "scene/animation/MatrixKeys.h"
#include "scene/graph/Node.h"
#include "scene/manager/NodeIndex.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace velmoran::scene
{
/// All that it takes to evaluate one animation over one scene again and again: the nodes
/// that it drives, found once, and their keys, split once.
///
/// Takes no lock and raises no event. Threads: callers serialise access.
class PlaybackPlan
{
public:
    using BaseMatrices = std::map<NodePtr, Eigen::Matrix4f>;

    /// A node and its pose at the moment asked for.
    struct Evaluated
    {
        Node& node;
        const Eigen::Matrix4f* base; ///< what `pose` is multiplied onto; null: nothing
        EvaluatedPose pose;
    };

    /// For `animation`, which is not empty.
    explicit PlaybackPlan(const AnimationPtr& animation) : m_animation(animation) {}

    /// Takes what has changed in the animation and in `scene` since the last call into
    /// account. Constant when nothing has. `bases` must stay as it is while the
    /// plan is used, and `scene` the same.
    void update(const SceneManager& scene, const BaseMatrices& bases, ChannelWarnings& warnings);

    /// Calls `visit` with an `Evaluated` for every node that has a pose at `time`, in
    /// the order of the nodes' handles. The nodes live as long as the scene is not changed,
    /// which `visit` must not do either.
    template <typename Visit>
    void evaluate(float time, Visit visit);

private:
    struct MatrixTrack
    {
        const MatrixKeys* keys;
        std::size_t cursor;
    };

    /// A node and its range of tracks, of matrices or of its list.
    struct Driver
    {
        Node* node;
        const Eigen::Matrix4f* base;
        std::size_t begin;
        std::size_t end;
        bool drivenByMatrix;
    };

    bool isCurrent() const;
    bool areKeysCurrent() const;
    void stampTree(const SceneManager& scene);
    void addDriver(const NodePtr& node, const std::vector<ChannelBinding>& channels,
                   const BaseMatrices& bases);
    bool evaluateNode(const Driver& driver, float time, EvaluatedPose& pose);

    AnimationPtr m_animation;
    ChannelBinder::Keys m_keys;
    TreeStamp m_treeStamp;               ///< as long as it is current, the nodes of m_drivers live
    RevisionStamp m_stamp;               ///< of the animations and transformation lists
    mutable std::uint64_t m_changes = 0; ///< watched changes at the last comparison
    std::vector<Driver> m_drivers;
    std::vector<MatrixTrack> m_matrixTracks;
    std::vector<ListTrack> m_listTracks;
};

template <typename Visit>
void PlaybackPlan::evaluate(float time, Visit visit)
{
    for (const Driver& driver : m_drivers)
    {
        EvaluatedPose pose;
        if (evaluateNode(driver, time, pose))
        {
            visit(Evaluated{*driver.node, driver.base, pose});
        }
    }
}

inline bool PlaybackPlan::evaluateNode(const Driver& driver, float time, EvaluatedPose& pose)
{
    if (!driver.drivenByMatrix)
    {
        return evaluateList(driver.node->getOriginalTransformations(),
                            m_listTracks.data() + driver.begin, m_listTracks.data() + driver.end,
                            time, pose);
    }
    // The last channel that has a value is the one that counts.
    for (std::size_t i = driver.end; i != driver.begin; --i)
    {
        MatrixTrack& track = m_matrixTracks[i - 1];
        if (track.keys->evaluate(time, track.cursor, pose))
        {
            return true;
        }
    }
    return false;
}
} // namespace velmoran::scene
