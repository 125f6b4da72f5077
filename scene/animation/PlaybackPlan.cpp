#include "scene/animation/PlaybackPlan.h"

#include "scene/animation/SamplerKeys.h"
#include "scene/graph/PoseWriter.h"
#include "scene/manager/SceneManager.h"

#include <algorithm>

namespace velmoran::scene
{
void PlaybackPlan::update(const SceneManagerPtr& scene, const SetUp& setUp,
                          ChannelWarnings& warnings)
{
    if (isCurrent())
    {
        return;
    }
    m_clocks.clear();
    m_clocksByHash.clear();
    m_matrixDrivers.clear();
    m_listDrivers.clear();
    m_tracks.clear();
    m_changes = core::utils::Revision::getWatchedChanges();
    stampTree(*scene);

    ChannelBinder binder(*scene, std::move(m_keys), &warnings);
    binder.bind(*m_animation);
    m_keys = binder.takeKeys();
    m_stamp = binder.takeStamp();
    std::size_t place = 0;
    for (const auto& [node, channels] : binder.getBindings())
    {
        addDriver({node.get(), setUp(node, channels), place, PoseWriter::belongsTo(scene, *node)},
                  channels);
        ++place;
    }
}

bool PlaybackPlan::isCurrent() const
{
    if (!m_treeStamp.isCurrent())
    {
        return false;
    }
    const std::uint64_t changes = core::utils::Revision::getWatchedChanges();
    if (changes != m_changes)
    {
        if (!m_stamp.isCurrent() || !areKeysCurrent())
        {
            return false;
        }
        m_changes = changes;
    }
    return true;
}

bool PlaybackPlan::areKeysCurrent() const
{
    return std::all_of(m_keys.begin(), m_keys.end(),
                       [](const auto& entry) { return entry.second->isCurrent(); });
}

void PlaybackPlan::stampTree(const SceneManager& scene)
{
    m_treeStamp.clear();
    m_treeStamp.include(scene.getTreeRevision());
    for (const NodePtr& node : scene.getNodeArray())
    {
        m_treeStamp.include(node->getTreeRevision());
    }
}

void PlaybackPlan::addDriver(const Driven& driven, const std::vector<ChannelBinding>& channels)
{
    const bool takesMatrix = isDrivenByMatrix(channels);
    SamplerKeys& first = *channels.front().keys;
    if (takesMatrix && channels.size() == 1 && first.asMatrices().hasNoSteps())
    {
        m_matrixDrivers.push_back({driven, &first.asMatrices(), clockOf(first)});
        return;
    }
    const std::size_t begin = m_tracks.size();
    for (const ChannelBinding& channel : channels)
    {
        m_tracks.push_back({channel.keys.get(),
                            channel.isWholeMatrix ? &channel.keys->asMatrices() : nullptr,
                            clockOf(*channel.keys), channel.entry, channel.first, channel.count});
    }
    std::stable_sort(m_tracks.begin() + static_cast<std::ptrdiff_t>(begin), m_tracks.end(),
                     [](const ListTrack& a, const ListTrack& b) { return a.entry < b.entry; });
    m_listDrivers.push_back({driven, takesMatrix, begin, m_tracks.size()});
}

/// The clock for the times of `keys`: one that is there, if it has the same.
std::size_t PlaybackPlan::clockOf(const SamplerKeys& keys)
{
    const KeyTimes& times = *keys.getTimes();
    const auto [first, last] = m_clocksByHash.equal_range(times.getHash());
    const auto same = std::find_if(first, last,
                                   [&](const auto& entry)
                                   { return m_clocks[entry.second].getTimes().isSameAs(times); });
    if (same != last)
    {
        return same->second;
    }
    m_clocksByHash.emplace(times.getHash(), m_clocks.size());
    m_clocks.emplace_back(keys.getTimes());
    return m_clocks.size() - 1;
}

bool PlaybackPlan::evaluateTracks(const ListDriver& driver, EvaluatedPose& pose) const
{
    const ListTrack* const begin = m_tracks.data() + driver.begin;
    const ListTrack* const end = m_tracks.data() + driver.end;
    if (!driver.takesMatrix)
    {
        return evaluateList(driver.driven.node->getOriginalTransformations(), begin, end, m_clocks,
                            pose);
    }
    // The last channel that has a value is the one that counts.
    for (const ListTrack* track = end; track != begin; --track)
    {
        const KeyMoment& moment = m_clocks[track[-1].clock].getMoment();
        if (moment.state == KeyMoment::WITHIN && track[-1].matrices->evaluate(moment.segment, pose))
        {
            return true;
        }
    }
    return false;
}
} // namespace velmoran::scene
