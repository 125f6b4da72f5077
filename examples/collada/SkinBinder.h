#pragma once

#include "examples/collada/NodeSearch.h"
#include "examples/collada/SceneBuilder.h"

#include <cstdint>
#include <map>
#include <unordered_set>

namespace velmoran::examples::collada
{
/// Binds skins to the nodes of a scene that are their joints: writes the nodes' IDs into
/// the skins' lists of joint names, by which the library looks joints up.
///
/// What a name means, the first that there is:
///     - of a `<Name_array>`: the node with this SID at or below a skeleton of the instance,
///       breadth first, the skeletons in order; then the node with this ID. An instance
///       without a skeleton in the scene has the whole scene for one.
///     - of an `<IDREF_array>`: the node with this ID.
///     - of a `<SIDREF_array>`: a path of an ID, or "." for the skeletons, and SIDs.
/// Of nodes that `<instance_node>` copies, the one nearest to the instance is meant. A name
/// that means no node is kept, with a warning; so are all names of controllers that
/// no node instances.
/// Influences of the bind shape itself (joint -1) go to the scene's root as another joint
///     with the identity as its inverse bind matrix.
/// Instances of a controller whose joints are other nodes get a controller of their own
///     with a generated ID, behind those of the document. All share the geometry and the
///     other streams. When these copies come to too much, the remaining instances use the
///     controller of the first one, with a warning.
class SkinBinder
{
public:
    /// All but the scene must outlive this object. `nodes` are not changed by it.
    SkinBinder(Document& document, const Content& content, const std::vector<PlacedNode>& nodes,
               const scene::SceneManagerPtr& scene);

    /// The controller, bound for an instance of it at the node `place`. Instances come in the
    /// order of the nodes.
    scene::ControllerPtr bind(std::size_t place, const GeometryDraft& instance);

    /// The IDs of the nodes where the skeletons of that instance begin; of one that is not in
    /// the scene, the ID that the document writes.
    std::vector<std::string> getSkeletonIDs(std::size_t place, const GeometryDraft& instance);

private:
    using Places = std::vector<std::size_t>;
    using Names = std::vector<std::string>;

    /// A list of joint names as the document has it.
    struct JointList
    {
        const char* input; ///< "joints" or "vertex_weights"
        NameKind kind;
        Names names;
    };

    /// A controller of the document.
    struct Entry
    {
        std::vector<JointList> lists;
        bool usesBindShape = false;
        std::map<Names, scene::ControllerPtr> bound; ///< by the IDs of their joints
    };

    Entry& getEntry(const scene::ControllerPtr& controller);
    Places findSkeletons(const GeometryDraft& instance);
    Names findNames(const Entry& entry, const GeometryDraft& instance);
    bool spend(std::uint64_t work, const GeometryDraft& instance);
    std::optional<std::size_t> findJoint(NameKind kind, const std::string& name,
                                         const Places& tops) const;
    std::optional<std::size_t> followPath(const std::string& path, const Places& tops) const;
    std::optional<std::size_t> findBelow(const std::string& sid, const Places& tops,
                                         bool withTops) const;
    void warn(const GeometryDraft& instance, const std::string& reason);

    Document& m_document;
    const Content& m_content;
    const std::vector<PlacedNode>& m_nodes;
    const scene::SceneManagerPtr m_scene;
    NodeSearch m_search;
    std::unordered_map<const scene::Controller*, Entry> m_entries;
    std::unordered_set<const void*> m_seen; ///< elements of instances
    bool m_warns = true;                    ///< the instance that is bound is no copy
    std::uint64_t m_work = 0;               ///< names looked up and values copied
};
} // namespace velmoran::examples::collada
