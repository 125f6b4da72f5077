#include "examples/collada/NodeSearch.h"

#include <algorithm>

namespace velmoran::examples::collada
{
NodeSearch::NodeSearch(const NodeDrafts& drafts, const std::vector<PlacedNode>& nodes)
    : m_drafts(drafts),
      m_nodes(nodes),
      m_byDraft(drafts.getDrafts().size()),
      m_named(m_byDraft.size()),
      m_depths(nodes.size(), 0)
{
    for (std::size_t place = 0; place < nodes.size(); ++place)
    {
        const PlacedNode& node = nodes[place];
        const auto draft = static_cast<std::size_t>(node.draft - drafts.getDrafts().data());
        m_byDraft[draft].push_back(place);
        if (node.keepsID)
        {
            m_named[draft] = place;
        }
        if (!node.draft->sid.empty())
        {
            m_bySid[node.draft->sid].push_back(place);
        }
        m_depths[place] = place == 0 ? 0 : m_depths[node.parent] + 1;
    }
}

void NodeSearch::moveTo(std::size_t place)
{
    for (; m_next <= place; ++m_next)
    {
        while (!m_path.empty() && m_nodes[m_path.back()].end <= m_next)
        {
            m_path.pop_back();
        }
        m_path.push_back(m_next);
    }
}

std::optional<std::size_t> NodeSearch::findDraft(std::size_t draft) const
{
    const std::vector<std::size_t>& places = m_byDraft[draft];
    if (places.size() < 2)
    {
        return places.empty() ? std::nullopt : std::make_optional(places.front());
    }
    const auto firstFrom = [&places](std::size_t top)
    { return std::lower_bound(places.begin(), places.end(), top); };
    const auto isAround = [&](std::size_t top)
    {
        const auto first = firstFrom(top);
        return first != places.end() && *first < m_nodes[top].end;
    };
    const std::size_t innermost =
        *(std::partition_point(m_path.begin(), m_path.end(), isAround) - 1);
    const std::optional<std::size_t> named = m_named[draft];
    const bool isNamedNear = named && *named >= innermost && *named < m_nodes[innermost].end;
    return isNamedNear ? *named : *firstFrom(innermost);
}

std::optional<std::size_t> NodeSearch::findID(const std::string& id) const
{
    const std::optional<std::size_t> draft = m_drafts.findPlace(id);
    return draft ? findDraft(*draft) : std::nullopt;
}

std::optional<std::size_t> NodeSearch::findSid(const std::string& sid, std::size_t top,
                                               bool withTop) const
{
    const auto found = m_bySid.find(sid);
    if (found == m_bySid.end())
    {
        return std::nullopt;
    }
    // Of the same depth, pre-order meets first what breadth-first search does.
    const std::vector<std::size_t>& places = found->second;
    const auto begin = std::lower_bound(places.begin(), places.end(), withTop ? top : top + 1);
    const auto end = std::lower_bound(begin, places.end(), m_nodes[top].end);
    const auto best = std::min_element(
        begin, end, [this](std::size_t a, std::size_t b) { return m_depths[a] < m_depths[b]; });
    return best == end ? std::nullopt : std::make_optional(*best);
}
} // namespace velmoran::examples::collada
