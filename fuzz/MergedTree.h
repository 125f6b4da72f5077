#pragma once

#include "fuzz/MergeModel.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/Node.h"

#include <memory>
#include <tuple>

namespace velmoran::fuzz
{
/// What must not change of a node that is only looked at.
inline auto stateOf(const scene::Node& node)
{
    std::vector<scene::InstanceGeometry::MaterialMap> bindings;
    for (const scene::InstanceGeometryPtr& instance : node.getInstancedGeometries())
    {
        bindings.push_back(instance->getMaterialMap());
    }
    const float* const matrix = node.getTransformations().data();
    return std::make_tuple(
        node.getID(), node.getName(), node.getLayers(), node.getInstancedGeometries(), bindings,
        node.getOriginalTransformations(), std::vector<float>(matrix, matrix + 16));
}

/// The node tree as it must be after a merge. Make it before, `merge` as the scene does, then
/// `compare`. Recursive: for small trees.
class MergedTree
{
public:
    explicit MergedTree(const scene::NodePtr& root) : m_root(root), m_rootBranch(addPresent(root))
    {
    }

    /// The branch of the first node with this ID, else the root's.
    void merge(const std::string& parentID, const scene::NodePtr& source, int flags)
    {
        m_flags = flags;
        Branch* const named = parentID.empty() ? nullptr : find(*m_rootBranch, parentID);
        merge(named != nullptr ? *named : *m_rootBranch, source);
    }

    void compare(const scene::SceneManagerPtr& scene, const MergedLibraries& libraries,
                 const Renames& layers) const
    {
        check(scene->getRoot() == m_root, "the root stays");
        compare(*m_rootBranch, *m_root, {*scene, libraries, layers});
    }

private:
    using State = decltype(stateOf(std::declval<const scene::Node&>()));

    struct Branch
    {
        scene::NodePtr node;          ///< ours, or theirs that a copy was made of
        std::string id;               ///< empty where it is a generated one
        std::unique_ptr<State> state; ///< of a node of ours
        std::vector<std::unique_ptr<Branch>> children;
    };

    struct Context
    {
        scene::SceneManager& scene;
        const MergedLibraries& libraries;
        const Renames& layers;
    };

    std::unique_ptr<Branch> addPresent(const scene::NodePtr& node)
    {
        auto branch = std::make_unique<Branch>();
        branch->node = node;
        branch->id = node->getID();
        branch->state = std::make_unique<State>(stateOf(*node));
        m_ids.insert(branch->id);
        for (const scene::NodePtr& child : node->getChildren())
        {
            branch->children.push_back(addPresent(child));
        }
        return branch;
    }

    static Branch* find(Branch& from, const std::string& id)
    {
        Branch* found = from.id == id ? &from : nullptr;
        for (auto child = from.children.begin(); !found && child != from.children.end(); ++child)
        {
            found = find(**child, id);
        }
        return found;
    }

    void merge(Branch& parent, const scene::NodePtr& source)
    {
        const bool clashes = m_ids.count(source->getID()) != 0;
        if (clashes && (m_flags & scene::SceneManager::DISCARD_REPEATED_NODES) != 0)
        {
            return;
        }
        Branch* target = nullptr;
        if (clashes && (m_flags & scene::SceneManager::MERGE_REPEATED_NODES) != 0)
        {
            const auto present =
                std::find_if(parent.children.begin(), parent.children.end(),
                             [&](const auto& child) { return child->id == source->getID(); });
            target = present == parent.children.end() ? nullptr : present->get();
        }
        if (target == nullptr)
        {
            parent.children.push_back(std::make_unique<Branch>());
            target = parent.children.back().get();
            target->node = source;
            target->id = clashes ? "" : source->getID();
            m_ids.insert(source->getID());
        }
        for (const scene::NodePtr& child : source->getChildren())
        {
            merge(*target, child);
        }
    }

    static void compare(const Branch& branch, const scene::Node& node, const Context& context)
    {
        if (branch.state)
        {
            check(branch.node.get() == &node && *branch.state == stateOf(node),
                  "nodes that were there stay as they were");
        }
        else
        {
            compareCopy(branch, node, context);
        }
        check(node.getChildCount() == branch.children.size(), "number of children");
        for (std::size_t i = 0; i < branch.children.size(); ++i)
        {
            const scene::NodePtr child = node.getChildren()[i];
            check(child->getParent().get() == &node, "parents are ours");
            compare(*branch.children[i], *child, context);
        }
    }

    static void compareCopy(const Branch& branch, const scene::Node& copy, const Context& context)
    {
        const scene::Node& source = *branch.node;
        check(&copy != &source, "nodes are copied");
        check(branch.id.empty() ? isGeneratedFrom(copy.getID(), source.getID())
                                : copy.getID() == branch.id,
              "only nodes that clash are renamed");
        check(copy.getName() == source.getName() && copy.getType() == source.getType() &&
                  copy.getSID() == source.getSID(),
              "names come along");
        check(copy.getTransformations() == source.getTransformations(), "so does the matrix");
        compareTransformations(source, copy);
        std::set<std::string> layers;
        for (const std::string& name : source.getLayersNames())
        {
            layers.insert(renamed(context.layers, name));
        }
        const std::vector<std::string> names = copy.getLayersNames();
        check(layers == std::set<std::string>(names.begin(), names.end()), "layers of a copy");
        compareInstances(source, copy, context);
    }

    static void compareTransformations(const scene::Node& source, const scene::Node& copy)
    {
        const std::vector<scene::ITransformationPtr>& theirs = source.getOriginalTransformations();
        const std::vector<scene::ITransformationPtr>& ours = copy.getOriginalTransformations();
        check(theirs.size() == ours.size(), "number of transformations");
        for (std::size_t i = 0; i < ours.size(); ++i)
        {
            check(ours[i] != theirs[i] && ours[i]->getType() == theirs[i]->getType() &&
                      ours[i]->getSid() == theirs[i]->getSid(),
                  "transformations are copied");
        }
    }

    static void compareInstances(const scene::Node& source, const scene::Node& copy,
                                 const Context& context)
    {
        const auto& theirs = source.getInstancedGeometries();
        const auto& ours = copy.getInstancedGeometries();
        check(theirs.size() == ours.size(), "number of instances");
        for (std::size_t i = 0; i < ours.size(); ++i)
        {
            const std::string id =
                renamed(context.libraries.geometries, theirs[i]->getGeometry()->getID());
            check(ours[i]->getGeometry() == context.scene.getGeometryManager()->getGeometry(id),
                  "instances use our geometries");
            check(ours[i]->getMaterialMap().size() == theirs[i]->getMaterialMap().size(),
                  "number of symbols");
            for (const auto& [symbol, material] : theirs[i]->getMaterialMap())
            {
                const scene::MaterialPtr expected =
                    material ? context.scene.getMaterialWithID(
                                   renamed(context.libraries.materials, material->getMaterialID()))
                             : scene::MaterialPtr();
                const auto bound = ours[i]->getMaterialMap().find(symbol);
                check(bound != ours[i]->getMaterialMap().end() && bound->second == expected,
                      "symbols are bound to our materials");
            }
        }
    }

    int m_flags = 0;
    std::set<std::string> m_ids; ///< of all nodes in the tree
    const scene::NodePtr m_root;
    const std::unique_ptr<Branch> m_rootBranch;
};
} // namespace velmoran::fuzz
