#include "examples/collada/NodeDrafts.h"

#include "examples/collada/Numbers.h"
#include "examples/collada/Transformations.h"

#include <string_view>

namespace velmoran::examples::collada
{
namespace
{
std::vector<std::string> splitWords(const std::string& text)
{
    std::vector<std::string> result;
    Words words(text);
    std::string_view word;
    while (words.next(word))
    {
        result.emplace_back(word);
    }
    return result;
}
} // namespace

NodeDrafts::NodeDrafts(Document& document, const Meshes& meshes, const Materials& materials,
                       const Optics& optics, const Controllers& controllers)
    : m_document(document),
      m_meshes(meshes),
      m_materials(materials),
      m_optics(optics),
      m_controllers(controllers)
{
    for (const pugi::xml_node& element :
         document.getElements("library_visual_scenes", "visual_scene"))
    {
        addTop(element);
    }
    for (const pugi::xml_node& element : document.getElements("library_nodes", "node"))
    {
        addTop(element);
    }
    linkInstances();
    for (NodeDraft& draft : m_drafts)
    {
        readContent(draft);
    }
    findRoot();
}

const std::vector<NodeDraft>& NodeDrafts::getDrafts() const
{
    return m_drafts;
}

std::optional<std::size_t> NodeDrafts::findPlace(const std::string& id) const
{
    const auto place = m_places.find(m_document.find(id, {"node"}).internal_object());
    return place == m_places.end() ? std::nullopt : std::make_optional(place->second);
}

const NodeDraft* NodeDrafts::getRoot() const
{
    return m_root;
}

/// Adds drafts for an element and all nodes below it, level by level.
void NodeDrafts::addTop(const pugi::xml_node& element)
{
    for (std::size_t i = addDraft(element); i < m_drafts.size(); ++i)
    {
        for (const pugi::xml_node& child : m_drafts[i].element.children())
        {
            const std::string_view name = child.name();
            if (name == "node")
            {
                const std::size_t place = addDraft(child);
                m_drafts[i].children.push_back({place, child, false});
            }
            else if (name == "instance_node")
            {
                m_drafts[i].children.push_back({0, child, true});
            }
        }
    }
}

std::size_t NodeDrafts::addDraft(const pugi::xml_node& element)
{
    const std::size_t place = m_drafts.size();
    m_places.emplace(element.internal_object(), place);
    NodeDraft& draft = m_drafts.emplace_back();
    draft.element = element;
    draft.id = m_document.ownsItsID(element) ? getAttribute(element, "id") : "";
    draft.sid = getAttribute(element, "sid");
    draft.name = getAttribute(element, "name");
    draft.type = element.attribute("type").as_string();
    draft.layers = splitWords(getAttribute(element, "layer"));
    return place;
}

void NodeDrafts::linkInstances()
{
    for (NodeDraft& draft : m_drafts)
    {
        for (NodeDraft::Child& child : draft.children)
        {
            if (!child.isCopy)
            {
                continue;
            }
            child.draft = requirePlace(child.element,
                                       m_document.resolveAttribute(child.element, "url", {"node"}));
        }
    }
}

/// Fails when `node`, which `where` refers to, has no draft.
std::size_t NodeDrafts::requirePlace(const pugi::xml_node& where, const pugi::xml_node& node) const
{
    const auto place = m_places.find(node.internal_object());
    if (place == m_places.end())
    {
        m_document.fail(where, "refers to a node outside all libraries");
    }
    return place->second;
}

void NodeDrafts::readContent(NodeDraft& draft)
{
    for (const pugi::xml_node& child : draft.element.children())
    {
        if (const scene::ITransformationPtr transformation = readTransformation(m_document, child))
        {
            draft.transformations.push_back(transformation);
        }
        else
        {
            readInstance(draft, child);
        }
    }
}

void NodeDrafts::readInstance(NodeDraft& draft, const pugi::xml_node& element)
{
    const std::string_view name = element.name();
    if (name == "instance_geometry")
    {
        readGeometry(draft, element);
    }
    else if (name == "instance_controller")
    {
        readController(draft, element);
    }
    else if (name == "instance_camera")
    {
        readOptics(draft.cameras, element, "camera");
    }
    else if (name == "instance_light")
    {
        readOptics(draft.lights, element, "light");
    }
}

void NodeDrafts::readGeometry(NodeDraft& draft, const pugi::xml_node& element)
{
    GeometryDraft geometry;
    geometry.element = element;
    geometry.mesh = m_meshes.getMesh(m_document.resolveAttribute(element, "url", {"geometry"}));
    readBindings(geometry, element);
    if (!geometry.mesh)
    {
        m_document.warn(element, "left out: its geometry was left out");
        return;
    }
    draft.geometries.push_back(std::move(geometry));
}

void NodeDrafts::readController(NodeDraft& draft, const pugi::xml_node& element)
{
    const pugi::xml_node target = m_document.resolveAttribute(element, "url", {"controller"});
    GeometryDraft geometry;
    geometry.element = element;
    geometry.mesh = m_controllers.getMesh(target);
    geometry.controller = m_controllers.getController(target);
    for (const pugi::xml_node& skeleton : element.children("skeleton"))
    {
        const pugi::xml_node node =
            m_document.resolve(skeleton, getTrimmedText(skeleton), {"node"});
        geometry.skeletons.push_back({requirePlace(skeleton, node), getAttribute(node, "id")});
    }
    readBindings(geometry, element);
    if (!geometry.controller)
    {
        m_document.warn(element, "left out: its controller was left out");
        return;
    }
    draft.geometries.push_back(std::move(geometry));
}

void NodeDrafts::readBindings(GeometryDraft& geometry, const pugi::xml_node& element) const
{
    const pugi::xml_node bindings = element.child("bind_material");
    geometry.hasBindings = !bindings.empty();
    for (const pugi::xml_node& instance :
         bindings.child("technique_common").children("instance_material"))
    {
        const pugi::xml_node material =
            m_document.resolveAttribute(instance, "target", {"material"});
        geometry.bindings.emplace(getAttribute(instance, "symbol"),
                                  m_materials.getMaterial(material));
    }
}

void NodeDrafts::readOptics(std::vector<std::size_t>& places, const pugi::xml_node& element,
                            const char* kind)
{
    const pugi::xml_node target = m_document.resolveAttribute(element, "url", {kind});
    const std::optional<std::size_t> place = m_optics.findIndex(target);
    if (!place)
    {
        m_document.warn(element, std::string("left out: its ") + kind + " was left out");
        return;
    }
    places.push_back(*place);
}

void NodeDrafts::findRoot()
{
    const pugi::xml_node instance =
        m_document.getRoot().child("scene").child("instance_visual_scene");
    const pugi::xml_node scene =
        instance ? m_document.resolveAttribute(instance, "url", {"visual_scene"})
                 : m_document.getRoot().child("library_visual_scenes").child("visual_scene");
    const auto place = m_places.find(scene.internal_object());
    if (place != m_places.end())
    {
        m_root = &m_drafts[place->second];
    }
    else
    {
        m_document.warn(m_document.getRoot(), "it has no visual scene; there are no nodes");
    }
}
} // namespace velmoran::examples::collada
