#pragma once

#include "core/Forward.h"
#include "scene/Forward.h"
#include "scene/manager/NodeIndex.h"

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace velmoran::scene
{
/// Old identifiers to new ones, for renamed items only.
using RenameMap = std::map<std::string, std::string>;

/// The identifiers of the nodes in a scene's tree while nodes are added to it.
///
/// Follows the nodes that it is told of; when somebody else changed the tree, as a
/// listener may, it reads the tree anew.
class TreeIdentifiers
{
public:
    /// Nodes will be added below `parent`, which may hang outside the tree.
    TreeIdentifiers(SceneManager& scene, const NodePtr& parent);

    bool contains(const std::string& id);

    /// Adds `node` under `parent`.
    void add(Node& parent, const NodePtr& node);

    /// The first child of `parent` with this ID; empty when there is none. Constant
    /// on average however many children there are.
    NodePtr findChild(Node& parent, const std::string& id);

private:
    using Children = std::unordered_map<std::string, NodePtr>;

    void readTree();
    void refresh();

    SceneManager& m_scene;
    const NodePtr m_parent;
    TreeStamp m_stamp;
    std::unordered_set<std::string> m_ids;
    bool m_parentIsInTree = false;
    std::unordered_map<const Node*, Children> m_firstChildByID;
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

    /// Merges under `parent`.
    SceneGraphMerger(SceneManager& scene, const NodePtr& parent, core::logger::Logger& logger,
                     const Translations& translations);

    void merge(const NodePtr& source, bool discardRepeated, bool mergeRepeated);

private:
    NodePtr mergeNode(Node& parent, const Node& source, bool discardRepeated, bool mergeRepeated);
    NodePtr copyNode(const Node& source, const std::string& id);
    void copyLayers(const Node& source, Node& copy);
    void copyInstances(const Node& source, Node& copy);
    std::map<std::string, MaterialPtr> translateMaterials(const InstanceGeometry& instance) const;

    SceneManager& m_scene;
    const NodePtr m_parent;
    core::logger::Logger& m_logger;
    const Translations m_translations;
    TreeIdentifiers m_identifiers;
    std::unordered_map<std::string, MaterialPtr> m_materials; ///< first of each ID
};
} // namespace velmoran::scene
