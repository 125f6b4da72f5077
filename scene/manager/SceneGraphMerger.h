#pragma once

#include "core/Forward.h"
#include "scene/Forward.h"
#include "scene/manager/NodeIndex.h"
#include "scene/manager/NodeTable.h"

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace velmoran::scene
{
class SceneAttempt;

/// Old identifiers to new ones, for renamed items only.
using RenameMap = std::map<std::string, std::string>;

/// A node that others are merged under, and whether it hung in the scene's tree when that
/// was read for the `reading`-th time.
struct MergeTarget
{
    NodePtr node;
    bool isInTree = false;
    unsigned int reading = 0; ///< 0: not known
    bool isNew = false;       ///< made by this merge
};

/// The identifiers of the nodes in a scene's tree while nodes are added to it.
///
/// Follows the nodes that it is told of; when somebody else changed the tree, as a
/// listener may, it reads the tree anew.
class TreeIdentifiers
{
public:
    /// Nodes will be added below `parent`, which may hang outside the tree below `root`.
    /// The root may be replaced meanwhile, by a change that moves `revision` on.
    TreeIdentifiers(const NodePtr& root, const TreeRevisionPtr& revision, const NodePtr& parent);

    /// Makes room for `count` more nodes.
    void expect(std::size_t count);

    bool contains(const std::string& id);

    /// Adds `node` under `parent`.
    MergeTarget add(const MergeTarget& parent, const NodePtr& node);

    /// The first child of `parent` with this ID; without node when there is none.
    /// Constant on average however many children there are.
    MergeTarget findChild(const MergeTarget& parent, const std::string& id);

private:
    /// The first child of each ID. Holds the parent, so that no other node gets its address.
    struct Children
    {
        NodePtr parent;
        std::unordered_map<std::string, NodePtr> firstByID;
    };

    void readTree();
    void refresh();
    bool isInTree(const MergeTarget& target) const;

    const NodePtr& m_root;
    const TreeRevisionPtr m_revision;
    const NodePtr m_parent;
    TreeStamp m_stamp;
    NodeTable m_nodes; ///< of the tree in m_stamp; these can't go without a new reading
    unsigned int m_reading = 0;
    bool m_parentIsInTree = false;
    std::unordered_set<const Node*> m_inTree; ///< of the last reading, unless it was the first
    std::unordered_map<const Node*, Children> m_children;
};

/// Copies a node tree of one scene into another.
class SceneGraphMerger
{
public:
    struct Translations
    {
        const RenameMap& geometryRenames;
        const RenameMap& materialRenames;
        const std::map<int, int>& layerMap;
    };

    /// Merges under `parent`. `root` is where the scene keeps its root.
    SceneGraphMerger(SceneManager& scene, const NodePtr& root, const NodePtr& parent,
                     core::logger::Logger& logger, const Translations& translations,
                     SceneAttempt& attempt);

    void merge(const NodePtr& source, bool discardRepeated, bool mergeRepeated);

private:
    MergeTarget mergeNode(const MergeTarget& parent, const Node& source, bool discardRepeated,
                          bool mergeRepeated);
    NodePtr copyNode(const Node& source, const std::string& id);
    void copyLayers(const Node& source, Node& copy);
    void copyInstances(const Node& source, Node& copy);
    std::map<std::string, MaterialPtr> translateMaterials(const InstanceGeometry& instance) const;

    SceneManager& m_scene;
    const NodePtr m_parent;
    core::logger::Logger& m_logger;
    const Translations m_translations;
    SceneAttempt& m_attempt; ///< told of what joins nodes that were there
    TreeIdentifiers m_identifiers;
    std::unordered_map<std::string, MaterialPtr> m_materials; ///< first of each ID
};
} // namespace velmoran::scene
