#include "examples/collada/Controllers.h"

#include "examples/collada/Skins.h"
#include "scene/deform/Controller.h"
#include "scene/deform/Morph.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/Mesh.h"

#include <boost/make_shared.hpp>

#include <string_view>
#include <unordered_set>

namespace velmoran::examples::collada
{
namespace
{
pugi::xml_node findBody(const Document& document, const pugi::xml_node& controller)
{
    const pugi::xml_node skin = controller.child("skin");
    const pugi::xml_node body = skin ? skin : controller.child("morph");
    if (!body)
    {
        document.fail(controller, "it has neither <skin> nor <morph>");
    }
    return body;
}

template <typename Value>
Value lookUp(const std::unordered_map<const void*, Value>& map, const pugi::xml_node& element)
{
    const auto found = map.find(element.internal_object());
    return found == map.end() ? Value() : found->second;
}
} // namespace

Controllers::Controllers(Document& document, Sources& sources, const Meshes& meshes)
    : m_document(document)
{
    for (const pugi::xml_node& controller :
         document.getIdentified("library_controllers", "controller"))
    {
        readController(sources, meshes, controller);
    }
}

const std::vector<scene::ControllerPtr>& Controllers::getControllers() const
{
    return m_controllers;
}

scene::ControllerPtr Controllers::getController(const pugi::xml_node& controller) const
{
    return lookUp(m_byElement, controller);
}

scene::MeshPtr Controllers::getMesh(const pugi::xml_node& controller) const
{
    return lookUp(m_meshes, controller);
}

void Controllers::readController(Sources& sources, const Meshes& meshes,
                                 const pugi::xml_node& controller)
{
    const scene::MeshPtr mesh = findMesh(meshes, controller);
    if (!mesh)
    {
        m_document.warn(controller, "left out: its geometry was left out");
        return;
    }
    const pugi::xml_node body = findBody(m_document, controller);
    const auto result = boost::make_shared<scene::Controller>(getAttribute(controller, "id"),
                                                              getAttribute(controller, "name"));
    if (std::string_view(body.name()) == "skin")
    {
        result->setSkin(readSkin(m_document, sources, body, mesh));
    }
    else
    {
        m_document.warn(body, "its targets are left out: a scene keeps the base shape only");
        result->setMorph(boost::make_shared<scene::Morph>(mesh));
    }
    m_controllers.push_back(result);
    m_byElement.emplace(controller.internal_object(), result);
}

/// Follows the sources to a geometry; all controllers on the way remember it.
scene::MeshPtr Controllers::findMesh(const Meshes& meshes, const pugi::xml_node& controller)
{
    std::unordered_set<const void*> chain;
    pugi::xml_node next = controller;
    while (std::string_view(next.name()) == "controller" &&
           m_meshes.count(next.internal_object()) == 0)
    {
        if (!chain.insert(next.internal_object()).second)
        {
            m_document.fail(next, "its source leads back to itself");
        }
        next = m_document.resolveAttribute(findBody(m_document, next), "source",
                                           {"geometry", "controller"});
    }
    const bool isGeometry = std::string_view(next.name()) == "geometry";
    const scene::MeshPtr mesh = isGeometry ? meshes.getMesh(next) : lookUp(m_meshes, next);
    for (const void* each : chain)
    {
        m_meshes[each] = mesh;
    }
    return mesh;
}
} // namespace velmoran::examples::collada
