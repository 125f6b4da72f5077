#include "scene/animation/PlaybackPlan.h"

#include "scene/animation/SamplerKeys.h"
#include "scene/manager/SceneManager.h"

#include <algorithm>

namespace velmoran::scene
{
void PlaybackPlan::update(const SceneManager& scene, const BaseMatrices& bases,
                          ChannelWarnings& warnings)
{
    if (isCurrent())
    {
        return;
    }
    m_drivers.clear();
    m_matrixTracks.clear();
    m_listTracks.clear();
    m_changes = core::utils::Revision::getWatchedChanges();
    stampTree(scene);

    ChannelBinder binder(scene, std::move(m_keys), &warnings);
    binder.bind(*m_animation);
    m_keys = binder.takeKeys();
    m_stamp = binder.takeStamp();
    for (const auto& [node, channels] : binder.getBindings())
    {
        addDriver(node, channels, bases);
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

void PlaybackPlan::addDriver(const NodePtr& node, const std::vector<ChannelBinding>& channels,
                             const BaseMatrices& bases)
{
    Driver driver{node.get(), nullptr, 0, 0, isDrivenByMatrix(channels)};
    if (driver.drivenByMatrix)
    {
        const auto base = bases.find(node);
        driver.base = base == bases.end() ? nullptr : &base->second;
        driver.begin = m_matrixTracks.size();
        for (const ChannelBinding& channel : channels)
        {
            m_matrixTracks.push_back({&channel.keys->asMatrices(), 0});
        }
        driver.end = m_matrixTracks.size();
    }
    else
    {
        driver.begin = m_listTracks.size();
        for (const ChannelBinding& channel : channels)
        {
            m_listTracks.push_back({channel.keys.get(),
                                    channel.isWholeMatrix ? &channel.keys->asMatrices() : nullptr,
                                    channel.entry, channel.first, channel.count});
        }
        driver.end = m_listTracks.size();
        std::stable_sort(m_listTracks.begin() + static_cast<std::ptrdiff_t>(driver.begin),
                         m_listTracks.end(),
                         [](const ListTrack& a, const ListTrack& b) { return a.entry < b.entry; });
    }
    m_drivers.push_back(driver);
}
} // namespace velmoran::scene
