#include "examples/collada/Meshes.h"

#include "core/event/EventManager.h"
#include "examples/collada/Primitives.h"
#include "scene/geometry/ConvexMesh.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <set>
#include <string_view>
#include <unordered_set>

namespace velmoran::examples::collada
{
namespace
{
constexpr const char* HULL_OF = "convex_hull_of";

void readVertices(Sources& sources, MeshDraft& draft)
{
    const pugi::xml_node vertices = draft.element.child("vertices");
    const std::string id = getAttribute(vertices, "id");
    if (!id.empty())
    {
        draft.mesh->setVerticesID(id);
    }
    draft.vertexStream = boost::make_shared<scene::Stream>(draft.mesh->getVerticesID(), 0, false);
    bool isFirst = true;
    for (const pugi::xml_node& input : vertices.children("input"))
    {
        const scene::StreamPtr stream = sources.getInput(input);
        const auto count = static_cast<std::uint64_t>(stream->getCount());
        draft.vertexCount = isFirst ? count : std::min(draft.vertexCount, count);
        isFirst = false;
        draft.addStream(stream);
        draft.mesh->addVerticesMapping(
            scene::StreamMapping(getAttribute(input, "semantic"), stream, 0));
    }
}

/// The element that tells what the geometry is made of; empty when it is no mesh.
pugi::xml_node findBody(const pugi::xml_node& geometry)
{
    const pugi::xml_node mesh = geometry.child("mesh");
    return mesh ? mesh : geometry.child("convex_mesh");
}

/// Whether it names the geometry whose hull it is.
bool isHull(const pugi::xml_node& geometry)
{
    return !findBody(geometry).attribute(HULL_OF).empty();
}

scene::MeshPtr makeMesh(const pugi::xml_node& geometry, const pugi::xml_node& body)
{
    const std::string id = getAttribute(geometry, "id");
    const std::string name = getAttribute(geometry, "name");
    return std::string_view(body.name()) == "mesh"
               ? boost::make_shared<scene::Mesh>(id, name)
               : boost::make_shared<scene::ConvexMesh>(id, name);
}

std::vector<std::string> findSymbols(const scene::Mesh& mesh)
{
    std::set<std::string> symbols;
    for (const scene::IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
    {
        symbols.insert(primitive->getMaterialSymbol());
    }
    return std::vector<std::string>(symbols.begin(), symbols.end());
}
} // namespace

Meshes::Meshes(Document& document, Sources& sources, const ReadOptions& options)
    : m_document(document),
      m_sources(sources),
      m_options(options),
      m_manager(boost::make_shared<scene::GeometryManager>(core::event::EventManagerPtr()))
{
    const std::vector<pugi::xml_node> geometries =
        document.getIdentified("library_geometries", "geometry");
    for (const pugi::xml_node& geometry : geometries)
    {
        if (const pugi::xml_node body = findBody(geometry))
        {
            readGeometry(geometry, body);
        }
        else
        {
            document.warn(geometry, "left out: it is not a mesh");
        }
    }
    for (const pugi::xml_node& geometry : geometries)
    {
        linkHull(geometry);
    }
}

const scene::GeometryManagerPtr& Meshes::getManager() const
{
    return m_manager;
}

scene::MeshPtr Meshes::getMesh(const pugi::xml_node& geometry) const
{
    const auto found = m_meshes.find(geometry.internal_object());
    return found == m_meshes.end() ? scene::MeshPtr() : found->second;
}

const std::vector<std::string>& Meshes::getSymbols(const scene::MeshPtr& mesh) const
{
    return m_symbols.at(mesh.get());
}

void Meshes::readGeometry(const pugi::xml_node& geometry, const pugi::xml_node& body)
{
    MeshDraft draft;
    draft.element = body;
    draft.mesh = makeMesh(geometry, body);
    m_manager->addGeometry(draft.mesh);
    m_meshes.emplace(geometry.internal_object(), draft.mesh);
    for (const scene::StreamPtr& stream : m_sources.getStreamsIn(draft.element))
    {
        draft.addStream(stream);
    }
    readVertices(m_sources, draft);
    readPrimitives(m_document, m_sources, draft, m_options.keepPolygons);
    m_symbols.emplace(draft.mesh.get(), findSymbols(*draft.mesh));
}

void Meshes::linkHull(const pugi::xml_node& geometry)
{
    if (!isHull(geometry))
    {
        return;
    }
    const scene::MeshPtr enclosed = getMesh(findEnclosed(geometry));
    if (!enclosed)
    {
        m_document.warn(geometry, "the geometry whose hull it is was left out");
    }
    boost::static_pointer_cast<scene::ConvexMesh>(getMesh(geometry))->setConvexHullOf(enclosed);
}

/// Follows hulls of hulls; all on the way remember where that leads.
pugi::xml_node Meshes::findEnclosed(const pugi::xml_node& hull)
{
    std::unordered_set<const void*> chain;
    pugi::xml_node next = hull;
    while (isHull(next) && m_enclosed.count(next.internal_object()) == 0)
    {
        if (!chain.insert(next.internal_object()).second)
        {
            m_document.fail(next, "it is a convex hull of itself");
        }
        next = m_document.resolveAttribute(findBody(next), HULL_OF, {"geometry"});
    }
    const auto known = m_enclosed.find(next.internal_object());
    const pugi::xml_node enclosed = known == m_enclosed.end() ? next : known->second;
    for (const void* each : chain)
    {
        m_enclosed[each] = enclosed;
    }
    return enclosed;
}
} // namespace velmoran::examples::collada
