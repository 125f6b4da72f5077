#pragma once

#include "scene/Forward.h"
#include "scene/graph/ISceneContext.h"
#include "scene/manager/NodeTable.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace velmoran::scene
{
/// The state of a node tree at one moment: whether it has changed since.
///
/// The nodes of a tree may belong to several scenes, living and dead; each of them
/// has a counter that every change of its nodes moves on.
class TreeStamp
{
public:
    void clear() { m_revisions.clear(); }

    /// Records the present value of a counter; to be called with that of the scene
    /// before the tree is read, and with that of every node.
    void include(const TreeRevisionPtr& revision);

    /// Whether no included counter has moved on. False for an empty stamp.
    bool isCurrent() const;

    /// Takes one further change of `revision` as known.
    void expectChange(const TreeRevisionPtr& revision);

private:
    std::vector<std::pair<TreeRevisionPtr, std::uint64_t>> m_revisions; ///< mostly one
};

/// Finds nodes of a tree by identifier: the first match of a walk that meets a node
/// before its children and children in order.
///
/// Threads: may be asked from several threads at once while nobody changes the tree.
/// Cost: constant on average on an unchanged tree. The first search after a change
///     walks the tree, the second builds the index, also in one walk.
class NodeIndex
{
public:
    /// `revision` is the counter of the scene whose tree is searched.
    explicit NodeIndex(const TreeRevisionPtr& revision);

    /// The first node below `root` with this ID; empty when none, or without root.
    NodePtr find(const std::string& id, const NodePtr& root);

private:
    void build(Node& root);

    const TreeRevisionPtr m_revision;
    std::mutex m_mutex;
    NodeTable m_firstByID; ///< of the tree in m_stamp
    const Node* m_root = nullptr;
    TreeStamp m_stamp;
    TreeStamp m_searched; ///< when the last plain search began
};
} // namespace velmoran::scene
