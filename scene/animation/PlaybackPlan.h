#pragma once

#include "scene/Forward.h"
#include "scene/animation/ChannelBinding.h"
#include "scene/animation/KeyClock.h"
#include "scene/animation/ListTrack.h"
#include "scene/animation/MatrixKeys.h"
#include "scene/animation/PoseLanes.h"
#include "scene/graph/Node.h"
#include "scene/graph/PoseWriter.h"
#include "scene/manager/NodeIndex.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>
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
    /// Told of every node that is found, with its channels; answers its base matrix, null
    /// for none, which stays as it is as long as the plan is used.
    using SetUp =
        std::function<const Eigen::Matrix4f*(const NodePtr&, const std::vector<ChannelBinding>&)>;

    /// A node that is driven.
    struct Driven
    {
        Node* node;
        const Eigen::Matrix4f* base; ///< what its pose is multiplied onto; null: nothing
        std::size_t place;           ///< in the order of the nodes' handles
        bool ofScene;                ///< whether it was made for the scene
    };

    /// For `animation`, which is not empty.
    explicit PlaybackPlan(const AnimationPtr& animation) : m_animation(animation) {}

    /// Takes what has changed in the animation and in `scene` since the last call into
    /// account. Constant when nothing has. `scene` must be the same while the plan is used.
    void update(const SceneManagerPtr& scene, const SetUp& setUp, ChannelWarnings& warnings);

    /// Calls `visit(const Driven&, EvaluatedPose&)` for every node that has a pose at
    /// `time`, in no certain order. The nodes live as long as the scene is not changed,
    /// which `visit` must not do either; it may change the pose.
    template <typename Visit>
    void evaluate(float time, Visit visit);

private:
    /// A node with one channel, of matrix keys without steps.
    struct MatrixDriver
    {
        Driven driven;
        const MatrixKeys* keys;
        std::size_t clock;
    };

    /// A node with its range of tracks, from which it takes one matrix or builds its list.
    struct ListDriver
    {
        Driven driven;
        bool takesMatrix;
        std::size_t begin;
        std::size_t end;
    };

    bool isCurrent() const;
    bool areKeysCurrent() const;
    void stampTree(const SceneManager& scene);
    void addDriver(const Driven& driven, const std::vector<ChannelBinding>& channels);
    std::size_t clockOf(const SamplerKeys& keys);
    bool evaluateTracks(const ListDriver& driver, EvaluatedPose& pose) const;

    AnimationPtr m_animation;
    ChannelBinder::Keys m_keys;
    TreeStamp m_treeStamp;               ///< as long as it is current, all driven nodes live
    RevisionStamp m_stamp;               ///< of the animations and transformation lists
    mutable std::uint64_t m_changes = 0; ///< watched changes at the last comparison
    std::vector<KeyClock> m_clocks;
    std::unordered_multimap<std::size_t, std::size_t> m_clocksByHash; ///< indices of m_clocks
    std::vector<MatrixDriver> m_matrixDrivers;
    std::vector<ListDriver> m_listDrivers;
    std::vector<ListTrack> m_tracks; ///< of the list drivers
};

template <typename Visit>
void PlaybackPlan::evaluate(float time, Visit visit)
{
    for (KeyClock& clock : m_clocks)
    {
        clock.setTime(time);
    }
    PoseLanes lanes;
    const Driven* inLanes[PoseLanes::COUNT];
    std::size_t count = 0;
    const auto visitLanes = [&]
    {
        lanes.compute(count);
        for (std::size_t i = 0; i < count; ++i)
        {
            visit(*inLanes[i], lanes.pose(i));
        }
        count = 0;
    };
    for (std::size_t d = 0; d < m_matrixDrivers.size(); ++d)
    {
        const MatrixDriver& driver = m_matrixDrivers[d];
        const KeyMoment& moment = m_clocks[driver.clock].getMoment();
        if (d + 16 < m_matrixDrivers.size())
        {
            __builtin_prefetch(m_matrixDrivers[d + 16].keys);
            m_matrixDrivers[d + 8].keys->prefetch(moment.segment);
        }
        if (moment.state == KeyMoment::WITHIN && driver.keys->set(lanes, count, moment.segment))
        {
            PoseWriter::prefetch(*driver.driven.node);
            inLanes[count++] = &driver.driven;
            if (count == PoseLanes::COUNT)
            {
                visitLanes();
            }
        }
    }
    visitLanes();
    EvaluatedPose pose;
    for (const ListDriver& driver : m_listDrivers)
    {
        if (evaluateTracks(driver, pose))
        {
            visit(driver.driven, pose);
        }
    }
}
} // namespace velmoran::scene
