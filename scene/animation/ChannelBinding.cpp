#include "scene/animation/ChannelBinding.h"

#include "scene/animation/Animation.h"
#include "scene/animation/AnimationWalk.h"
#include "scene/animation/SamplerKeys.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/Node.h"
#include "scene/graph/TransformationValues.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace velmoran::scene
{
namespace
{
constexpr int LAST = 3; ///< index of a matrix's last row and column

/// Whether the element channels of one matrix name its rows first. The column should
/// come first, but documents disagree. The last column is the translation; nobody
/// animates the last row alone, so where only that seems to be named, it is the column.
bool namesRowsFirst(const std::vector<ChannelBinding>& channels, std::size_t entry)
{
    bool translatesByColumn = false;
    bool translatesByRow = false;
    for (const ChannelBinding& channel : channels)
    {
        if (channel.entry == entry && channel.member.form == ChannelMember::ELEMENT)
        {
            const auto [first, second] =
                std::make_pair(channel.member.first, channel.member.second);
            translatesByColumn = translatesByColumn || (first == LAST && second != LAST);
            translatesByRow = translatesByRow || (first != LAST && second == LAST);
        }
    }
    return translatesByRow && !translatesByColumn;
}

void orderElements(std::vector<ChannelBinding>& channels)
{
    for (ChannelBinding& channel : channels)
    {
        if (channel.member.form == ChannelMember::ELEMENT)
        {
            int column = channel.member.first;
            int row = channel.member.second;
            if (namesRowsFirst(channels, channel.entry))
            {
                std::swap(column, row);
            }
            channel.first = static_cast<std::size_t>(4 * column + row);
        }
    }
}
} // namespace

bool isDrivenByMatrix(const std::vector<ChannelBinding>& channels)
{
    return std::all_of(channels.begin(), channels.end(),
                       [&](const ChannelBinding& channel)
                       { return channel.isWholeMatrix && channel.entry == channels[0].entry; });
}

void ChannelWarnings::warn(const SamplerPtr& sampler, const std::string& target, int kind)
{
    if (!m_told.emplace(sampler, target).second)
    {
        return;
    }
    m_logger << "[WARN] No valid target...";
    if (kind == ITransformation::TRANSLATE)
    {
        m_logger << "[WARN] Animating Translation with no valid target...";
    }
}

ChannelBinder::ChannelBinder(const SceneManager& scene, Keys known, ChannelWarnings* warnings)
    : m_scene(scene), m_known(std::move(known)), m_warnings(warnings)
{
}

void ChannelBinder::bind(const Animation& animation)
{
    for (const Animation* const part : childrenFirst(animation))
    {
        m_stamp.include(part->getRevision());
        for (const auto& [sampler, target] : part->getChannelArray())
        {
            if (sampler)
            {
                bindChannel(sampler, target);
            }
        }
    }
    for (auto& [node, channels] : m_bindings)
    {
        orderElements(channels);
    }
}

void ChannelBinder::bindChannel(const SamplerPtr& sampler, const std::string& target)
{
    const SamplerKeysPtr keys = keysOf(sampler);
    if (!keys->isUsable(1))
    {
        return;
    }
    const ChannelTarget parsed(target);
    const NodePtr node = parsed.hasPath ? m_scene.getNodeByID(parsed.nodeId) : NodePtr();
    const std::size_t entry = node ? findEntry(node, parsed.sid) : 0;
    if (!node || entry == node->getOriginalTransformations().size())
    {
        warn(sampler, target, ITransformation::LOOKAT);
        return;
    }
    const TransformationValues values = valuesOf(*node->getOriginalTransformations()[entry]);
    if (values.size == 0)
    {
        return; // look-at and skew are not applied
    }
    const bool isMatrix = values.kind == ITransformation::MATRIX;
    const ChannelMember member = memberOf(parsed, isMatrix, values.size);
    if (member.form == ChannelMember::UNKNOWN)
    {
        warn(sampler, target, values.kind);
        return;
    }
    const bool isWhole = member.form == ChannelMember::WHOLE;
    const auto count = static_cast<std::size_t>(isWhole ? values.size : 1);
    if (keys->isUsable(count))
    {
        const auto first = static_cast<std::size_t>(member.first);
        m_bindings[node].push_back(
            {keys, parsed.sid, entry, member, first, count, isWhole && isMatrix});
    }
}

SamplerKeysPtr ChannelBinder::keysOf(const SamplerPtr& sampler)
{
    SamplerKeysPtr& keys = m_used[sampler];
    if (!keys)
    {
        const auto known = m_known.find(sampler);
        const bool isCurrent = known != m_known.end() && known->second->isCurrent();
        keys = isCurrent ? known->second : boost::make_shared<SamplerKeys>(sampler);
    }
    return keys;
}

/// Index of the first transformation with this SID; the size of the list when none.
std::size_t ChannelBinder::findEntry(const NodePtr& node, const std::string& sid)
{
    const std::vector<ITransformationPtr>& list = node->getOriginalTransformations();
    if (m_watched.insert(node.get()).second)
    {
        m_stamp.include(node->getListRevision());
        for (const ITransformationPtr& transformation : list)
        {
            m_stamp.include(transformation->getSidRevision());
        }
    }
    const auto found =
        std::find_if(list.begin(), list.end(),
                     [&sid](const ITransformationPtr& t) { return t->getSid() == sid; });
    return static_cast<std::size_t>(found - list.begin());
}

void ChannelBinder::warn(const SamplerPtr& sampler, const std::string& target, int kind)
{
    if (m_warnings != nullptr)
    {
        m_warnings->warn(sampler, target, kind);
    }
}
} // namespace velmoran::scene
