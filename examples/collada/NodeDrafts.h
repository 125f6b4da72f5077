#pragma once

#include "examples/collada/Controllers.h"
#include "examples/collada/Materials.h"
#include "examples/collada/Meshes.h"
#include "examples/collada/Optics.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace velmoran::examples::collada
{
/// Where the joints of a skin begin.
struct SkeletonDraft
{
    std::size_t draft = 0; ///< the node's place in the list of drafts
    std::string id;        ///< the node's ID
};

/// An instance of a geometry or of a controller.
struct GeometryDraft
{
    pugi::xml_node element;
    scene::MeshPtr mesh;
    scene::ControllerPtr controller; ///< empty: the plain geometry
    std::vector<SkeletonDraft> skeletons;
    std::map<std::string, scene::MaterialPtr> bindings; ///< by symbol
    bool hasBindings = false;                           ///< the document has a `<bind_material>`
};

/// A `<node>`, or the `<visual_scene>` as the root of its nodes, before it belongs to a
/// scene.
struct NodeDraft
{
    /// A node below this one.
    struct Child
    {
        std::size_t draft = 0;  ///< its place in the list of drafts
        pugi::xml_node element; ///< its `<node>` or `<instance_node>`
        bool isCopy = false;    ///< placed by an `<instance_node>`
    };

    pugi::xml_node element;
    std::string id; ///< empty when there is none, or another node has it already
    std::string sid;
    std::string name;
    std::string type;
    std::vector<std::string> layers;
    std::vector<scene::ITransformationPtr> transformations; ///< to be cloned
    std::vector<GeometryDraft> geometries;
    std::vector<std::size_t> cameras; ///< places in `Optics::getCameras()`
    std::vector<std::size_t> lights;  ///< places in `Optics::getLights()`
    std::vector<Child> children;
};

/// The nodes of all visual scenes and node libraries of a document, as written:
/// `<instance_node>` are links here.
class NodeDrafts
{
public:
    /// Reads all nodes. Fails at references to what is not there. Instances of what
    /// was left out are left out with a warning.
    NodeDrafts(Document& document, const Meshes& meshes, const Materials& materials,
               const Optics& optics, const Controllers& controllers);

    const std::vector<NodeDraft>& getDrafts() const;

    /// The place of the node with this ID in the list of drafts.
    std::optional<std::size_t> findPlace(const std::string& id) const;

    /// The draft of the visual scene: that of `<scene>`, else the first one of the
    /// document; null when there is none.
    const NodeDraft* getRoot() const;

private:
    void addTop(const pugi::xml_node& element);
    std::size_t addDraft(const pugi::xml_node& element);
    std::size_t requirePlace(const pugi::xml_node& where, const pugi::xml_node& node) const;
    void linkInstances();
    void readContent(NodeDraft& draft);
    void readInstance(NodeDraft& draft, const pugi::xml_node& element);
    void readGeometry(NodeDraft& draft, const pugi::xml_node& element);
    void readController(NodeDraft& draft, const pugi::xml_node& element);
    void readBindings(GeometryDraft& geometry, const pugi::xml_node& element) const;
    void readOptics(std::vector<std::size_t>& places, const pugi::xml_node& element,
                    const char* kind);
    void findRoot();

    Document& m_document;
    const Meshes& m_meshes;
    const Materials& m_materials;
    const Optics& m_optics;
    const Controllers& m_controllers;
    std::vector<NodeDraft> m_drafts;
    std::unordered_map<const void*, std::size_t> m_places; ///< by element
    const NodeDraft* m_root = nullptr;
};
} // namespace velmoran::examples::collada
