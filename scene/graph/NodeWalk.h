#pragma once

#include "scene/graph/Node.h"

#include <cstddef>
#include <unordered_set>
#include <vector>

namespace velmoran::scene
{
/// Walks over a node and all nodes below it: a node before its children, children
/// in order, a node that several parents list only where it is met first.
///
/// Needs no recursion. The tree must not change while the walk goes on.
template <typename NodeType>
class NodeWalk
{
public:
    explicit NodeWalk(NodeType& start) : m_start(&start) {}

    /// The next node; null at the end.
    NodeType* next()
    {
        if (m_start != nullptr)
        {
            NodeType* const start = m_start;
            m_start = nullptr;
            return enter(*start);
        }
        while (!m_open.empty())
        {
            Level& level = m_open.back();
            const std::vector<NodePtr>& children = level.node->getChildren();
            if (level.nextChild == children.size())
            {
                m_open.pop_back();
                continue;
            }
            NodeType& child = *children[level.nextChild++];
            if (!child.isListedTwice() || m_metShared.insert(&child).second)
            {
                m_positionOfParent = level.position;
                return enter(child);
            }
        }
        return nullptr;
    }

    /// For the node that `next` gave last: how many nodes the walk had given before
    /// the parent it came from. 0 for the start.
    std::size_t positionOfParent() const { return m_positionOfParent; }

private:
    struct Level
    {
        NodeType* node;
        std::size_t nextChild;
        std::size_t position;
    };

    NodeType* enter(NodeType& node)
    {
        if (!node.getChildren().empty())
        {
            m_open.push_back({&node, 0, m_count});
        }
        ++m_count;
        return &node;
    }

    NodeType* m_start;
    std::vector<Level> m_open; ///< the nodes above the next one, outermost first
    std::unordered_set<const Node*> m_metShared;
    std::size_t m_count = 0;
    std::size_t m_positionOfParent = 0;
};
} // namespace velmoran::scene
