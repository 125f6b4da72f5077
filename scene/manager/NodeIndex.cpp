#include "scene/manager/NodeIndex.h"

#include "scene/graph/Node.h"
#include "scene/graph/NodeWalk.h"

#include <algorithm>

namespace velmoran::scene
{
void TreeStamp::include(const TreeRevisionPtr& revision)
{
    const bool known = std::any_of(m_revisions.begin(), m_revisions.end(),
                                   [&](const auto& entry) { return entry.first == revision; });
    if (!known)
    {
        m_revisions.emplace_back(revision, revision->load());
    }
}

bool TreeStamp::isCurrent() const
{
    return !m_revisions.empty() &&
           std::all_of(m_revisions.begin(), m_revisions.end(),
                       [](const auto& entry) { return entry.first->load() == entry.second; });
}

void TreeStamp::expectChange(const TreeRevisionPtr& revision)
{
    for (auto& entry : m_revisions)
    {
        entry.second += entry.first == revision ? 1U : 0U;
    }
}

NodeIndex::NodeIndex(const TreeRevisionPtr& revision) : m_revision(revision) {}

NodePtr NodeIndex::find(const std::string& id, const NodePtr& root)
{
    if (!root)
    {
        return NodePtr();
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_root != root.get() || !m_stamp.isCurrent())
    {
        if (!m_searched.isCurrent())
        {
            // Changed since the last search, and perhaps again before the next one.
            m_searched.clear();
            m_searched.include(m_revision);
            return root->findByID(id);
        }
        build(*root);
    }
    Node* const found = m_firstByID.find(id);
    return found != nullptr ? found->shared_from_this() : NodePtr();
}

void NodeIndex::build(Node& root)
{
    m_root = nullptr;
    m_firstByID.clear();
    m_stamp.clear();
    m_stamp.include(m_revision);
    NodeWalk<Node> walk(root);
    while (Node* const node = walk.next())
    {
        m_stamp.include(node->getTreeRevision());
        m_firstByID.insert(*node);
    }
    m_root = &root;
}
} // namespace velmoran::scene
