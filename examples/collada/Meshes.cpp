#include "examples/collada/Meshes.h"

#include "core/event/EventManager.h"
#include "examples/collada/Primitives.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <set>

namespace velmoran::examples::collada
{
namespace
{
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

Meshes::Meshes(Document& document, Sources& sources)
    : m_manager(boost::make_shared<scene::GeometryManager>(core::event::EventManagerPtr()))
{
    for (const pugi::xml_node& geometry : document.getIdentified("library_geometries", "geometry"))
    {
        if (geometry.child("mesh"))
        {
            readGeometry(document, sources, geometry);
        }
        else
        {
            document.warn(geometry, "left out: it is not a mesh");
        }
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

void Meshes::readGeometry(Document& document, Sources& sources, const pugi::xml_node& geometry)
{
    MeshDraft draft;
    draft.element = geometry.child("mesh");
    draft.mesh = boost::make_shared<scene::Mesh>(getAttribute(geometry, "id"),
                                                 getAttribute(geometry, "name"));
    m_manager->addGeometry(draft.mesh);
    m_meshes.emplace(geometry.internal_object(), draft.mesh);
    for (const scene::StreamPtr& stream : sources.getStreamsIn(draft.element))
    {
        draft.addStream(stream);
    }
    readVertices(sources, draft);
    readPrimitives(document, sources, draft);
    m_symbols.emplace(draft.mesh.get(), findSymbols(*draft.mesh));
}
} // namespace velmoran::examples::collada
