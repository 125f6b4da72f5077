#include "scene/manager/SceneGraphMerger.h"

#include "core/logger/Logger.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IGeometry.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeWalk.h"
#include "scene/manager/SceneAttempt.h"
#include "scene/material/Material.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace velmoran::scene
{
namespace
{
const std::string& translated(const RenameMap& renames, const std::string& id)
{
    const auto found = renames.find(id);
    return found == renames.end() ? id : found->second;
}
/// The nodes of a subtree, each once, and which are children of which.
class SubtreeList
{
public:
    explicit SubtreeList(const NodePtr& start)
    {
        m_nodes.push_back(start);
        for (std::size_t i = 0; i < m_nodes.size(); ++i)
        {
            m_firstChild.push_back(m_children.size());
            const Node& node = *m_nodes[i];
            for (const NodePtr& child : node.getChildren())
            {
                m_children.push_back(positionOf(child));
            }
        }
        m_firstChild.push_back(m_children.size());
    }

    std::size_t count() const { return m_nodes.size(); }
    const Node& nodeAt(std::size_t node) const { return *m_nodes[node]; }

    std::size_t countChildren(std::size_t node) const
    {
        return m_firstChild[node + 1] - m_firstChild[node];
    }

    std::size_t childOf(std::size_t node, std::size_t index) const
    {
        return m_children[m_firstChild[node] + index];
    }

private:
    std::size_t positionOf(const NodePtr& node)
    {
        std::size_t position = m_nodes.size();
        if (node->isListedTwice())
        {
            position = m_shared.emplace(node.get(), position).first->second;
        }
        if (position == m_nodes.size())
        {
            m_nodes.push_back(node);
        }
        return position;
    }

    std::vector<NodePtr> m_nodes;
    std::vector<std::size_t> m_firstChild; ///< by node: where its children begin, and the end
    std::vector<std::size_t> m_children;   ///< positions in m_nodes
    std::unordered_map<const Node*, std::size_t> m_shared; ///< what several parents list
};
} // namespace

// Identifiers of the tree

TreeIdentifiers::TreeIdentifiers(const NodePtr& root, const TreeRevisionPtr& revision,
                                 const NodePtr& parent)
    : m_root(root), m_revision(revision), m_parent(parent)
{
}

void TreeIdentifiers::expect(std::size_t count)
{
    refresh();
    m_nodes.reserve(count);
}

bool TreeIdentifiers::contains(const std::string& id)
{
    refresh();
    return m_nodes.find(id) != nullptr;
}

MergeTarget TreeIdentifiers::add(const MergeTarget& parent, const NodePtr& node)
{
    const bool known = m_stamp.isCurrent();
    const bool joinsTree = known && isInTree(parent);
    const unsigned int childrenBefore = parent.node->getChildCount();
    parent.node->addNode(node);
    if (!known || parent.node->getChildCount() != childrenBefore + 1)
    {
        return {node, false, 0, true};
    }
    m_stamp.expectChange(parent.node->getTreeRevision());
    if (!m_stamp.isCurrent())
    {
        return {node, false, 0, true};
    }
    if (joinsTree)
    {
        m_nodes.insert(*node);
        m_stamp.include(node->getTreeRevision());
    }
    const auto siblings = m_children.find(parent.node.get());
    if (siblings != m_children.end())
    {
        siblings->second.firstByID.emplace(node->getID(), node);
    }
    return {node, joinsTree, m_reading, true};
}

MergeTarget TreeIdentifiers::findChild(const MergeTarget& parent, const std::string& id)
{
    refresh();
    const auto inserted = m_children.try_emplace(parent.node.get());
    Children& children = inserted.first->second;
    if (inserted.second)
    {
        children.parent = parent.node;
        for (const NodePtr& child : parent.node->getChildren())
        {
            children.firstByID.emplace(child->getID(), child);
        }
    }
    const auto found = children.firstByID.find(id);
    return found == children.firstByID.end()
               ? MergeTarget()
               : MergeTarget{found->second, isInTree(parent), m_reading, false};
}

void TreeIdentifiers::refresh()
{
    if (!m_stamp.isCurrent())
    {
        readTree();
    }
}

bool TreeIdentifiers::isInTree(const MergeTarget& target) const
{
    if (target.reading == m_reading)
    {
        return target.isInTree;
    }
    return target.node == m_parent ? m_parentIsInTree : m_inTree.count(target.node.get()) != 0;
}

void TreeIdentifiers::readTree()
{
    const bool isFirst = m_reading == 0; // then there are no targets but the parent
    ++m_reading;
    m_stamp.clear();
    m_nodes.clear();
    m_inTree.clear();
    m_children.clear();
    m_parentIsInTree = false;
    m_stamp.include(m_revision);
    if (!m_root)
    {
        return;
    }
    NodeWalk<Node> walk(*m_root);
    while (Node* const node = walk.next())
    {
        m_stamp.include(node->getTreeRevision());
        m_nodes.insert(*node);
        m_parentIsInTree = m_parentIsInTree || node == m_parent.get();
        if (!isFirst)
        {
            m_inTree.insert(node);
        }
    }
}

// Merging

SceneGraphMerger::SceneGraphMerger(SceneManager& scene, const NodePtr& root, const NodePtr& parent,
                                   core::logger::Logger& logger, const Translations& translations,
                                   SceneAttempt& attempt)
    : m_scene(scene),
      m_parent(parent),
      m_logger(logger),
      m_translations(translations),
      m_attempt(attempt),
      m_identifiers(root, scene.getTreeRevision(), parent)
{
    for (const MaterialPtr& material : scene.getMaterialList())
    {
        m_materials.emplace(material->getMaterialID(), material);
    }
}

void SceneGraphMerger::merge(const NodePtr& source, bool discardRepeated, bool mergeRepeated)
{
    // The source is listed before anything is added: it may hold the parent, and a
    // listener may change it.
    const SubtreeList list(source);
    m_identifiers.expect(list.count());
    struct Task
    {
        std::size_t node;
        MergeTarget parent;
    };
    std::vector<Task> tasks{{0, {m_parent}}};
    while (!tasks.empty())
    {
        const Task task = std::move(tasks.back());
        tasks.pop_back();
        const MergeTarget target =
            mergeNode(task.parent, list.nodeAt(task.node), discardRepeated, mergeRepeated);
        if (target.node)
        {
            // The first child is to be met first.
            for (std::size_t child = list.countChildren(task.node); child > 0; --child)
            {
                tasks.push_back({list.childOf(task.node, child - 1), target});
            }
        }
    }
}

/// Merges one node; answers where its children go, without node when they are left out.
MergeTarget SceneGraphMerger::mergeNode(const MergeTarget& parent, const Node& source,
                                        bool discardRepeated, bool mergeRepeated)
{
    std::string id = source.getID();
    if (m_identifiers.contains(id))
    {
        if (discardRepeated)
        {
            m_logger << "[INFO] Found repeated Node with ID: " + id + ". Discarded.";
            return MergeTarget();
        }
        const MergeTarget present =
            mergeRepeated ? m_identifiers.findChild(parent, id) : MergeTarget();
        if (present.node)
        {
            return present;
        }
        id += "__renamed_" + m_scene.generateID() + "__";
        m_logger << "[INFO] Renamed repeated Node to: " + id;
    }
    const NodePtr copy = copyNode(source, id);
    if (!parent.isNew)
    {
        m_attempt.expectChild(parent.node, copy);
    }
    return m_identifiers.add(parent, copy);
}

NodePtr SceneGraphMerger::copyNode(const Node& source, const std::string& id)
{
    const NodePtr copy = source.copyFor(m_scene.shared_from_this(), id);
    copyLayers(source, *copy);
    copyInstances(source, *copy);
    return copy;
}

void SceneGraphMerger::copyLayers(const Node& source, Node& copy)
{
    const std::set<int> layers = source.getLayers(); // a listener may change the source
    for (const int layerID : layers)
    {
        const auto mapped = m_translations.layerMap.find(layerID);
        if (mapped != m_translations.layerMap.end())
        {
            copy.addToLayer(mapped->second);
            continue;
        }
        const std::string name = source.getLayerName(layerID);
        if (!name.empty())
        {
            copy.addToLayer(name);
        }
    }
}

void SceneGraphMerger::copyInstances(const Node& source, Node& copy)
{
    for (const InstanceGeometryPtr& instance : source.getInstancedGeometries())
    {
        const IGeometryPtr present = instance->getGeometry();
        const std::string id =
            translated(m_translations.geometryRenames, present ? present->getID() : "");
        const IGeometryPtr geometry = m_scene.getGeometryManager()->getGeometry(id);
        if (!geometry)
        {
            m_logger << "[ERROR] Trying to instantiate a non existent Geometry: " + id;
            continue;
        }
        copy.addInstanceGeometry(
            boost::make_shared<InstanceGeometry>(geometry, translateMaterials(*instance)));
    }
}

std::map<std::string, MaterialPtr>
SceneGraphMerger::translateMaterials(const InstanceGeometry& instance) const
{
    std::map<std::string, MaterialPtr> bindings;
    for (const auto& [symbol, material] : instance.getMaterialMap())
    {
        MaterialPtr& binding = bindings[symbol];
        const auto found = material ? m_materials.find(translated(m_translations.materialRenames,
                                                                  material->getMaterialID()))
                                    : m_materials.end();
        if (found != m_materials.end())
        {
            binding = found->second;
        }
    }
    return bindings;
}
} // namespace velmoran::scene
