#pragma once

#include "examples/collada/NodeDrafts.h"

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace velmoran::examples::collada
{
/// A node of the scene that is built from a document.
struct PlacedNode
{
    const NodeDraft* draft = nullptr;
    scene::NodePtr node;
    bool keepsID = false;   ///< has the ID of its draft, if that has one
    std::size_t parent = 0; ///< place in the list; of the root its own
    std::size_t end = 0;    ///< the nodes below it stand behind it, up to here
};

/// Finds the nodes of a scene by what the document calls them.
///
/// Nodes are told by their place in the list of all, which is in pre-order. A draft that
/// `<instance_node>` copies has several nodes.
class NodeSearch
{
public:
    /// Linear in both, which must outlive this object.
    NodeSearch(const NodeDrafts& drafts, const std::vector<PlacedNode>& nodes);

    /// The node that the next searches start from. Only forward, step by step or not.
    void moveTo(std::size_t place);

    /// The node of a draft that is nearest to where the search starts: below the innermost
    /// node around, and of several there the one that has the draft's ID, else the first. So
    /// what was copied together belongs together. Logarithmic.
    std::optional<std::size_t> findDraft(std::size_t draft) const;

    /// The same by the ID that the document writes.
    std::optional<std::size_t> findID(const std::string& id) const;

    /// The node with this SID that a breadth-first search meets first, below `top` or, with
    /// `withTop`, there. Linear in the nodes of that SID.
    std::optional<std::size_t> findSid(const std::string& sid, std::size_t top, bool withTop) const;

private:
    const NodeDrafts& m_drafts;
    const std::vector<PlacedNode>& m_nodes;

    // Places, in ascending order

    std::vector<std::vector<std::size_t>> m_byDraft;
    std::unordered_map<std::string, std::vector<std::size_t>> m_bySid;
    std::vector<std::size_t> m_path; ///< from the root to where the search starts

    std::vector<std::optional<std::size_t>> m_named; ///< by draft: the node that has its ID
    std::vector<std::size_t> m_depths;               ///< by place
    std::size_t m_next = 0;                          ///< the place to move to next
};
} // namespace velmoran::examples::collada
