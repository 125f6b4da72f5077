#include "scene/geometry/Mesh.h"

#include "core/utils/AllOrNothing.h"
#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamList.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace velmoran::scene
{
namespace
{
bool hasSemantic(const std::vector<StreamMapping>& mappings, StreamSemantic semantic)
{
    return std::any_of(mappings.begin(), mappings.end(),
                       [semantic](const StreamMapping& present)
                       { return present.getSemantic() == semantic; });
}
} // namespace

Mesh::Mesh(std::string id, std::string name)
    : m_id(std::move(id)),
      m_name(std::move(name)),
      m_verticesID(m_id + "_vertices"),
      m_type(MESH),
      m_bvMin(Eigen::Vector3f::Zero()),
      m_bvMax(Eigen::Vector3f::Zero()),
      m_bvCenter(Eigen::Vector3f::Zero())
{
}

Mesh::~Mesh() = default;

std::string Mesh::getID() const
{
    return m_id;
}

void Mesh::setID(std::string id)
{
    m_id = std::move(id);
}

std::string Mesh::getName() const
{
    return m_name;
}

void Mesh::setName(std::string name)
{
    m_name = std::move(name);
}

void Mesh::setType(Type type)
{
    m_type = type;
}

IGeometry::Type Mesh::getType() const
{
    return m_type;
}

void Mesh::print()
{
    for (const IMeshPrimitivePtr& primitive : m_primitives)
    {
        primitive->print();
    }
}

IGeometryPtr Mesh::clone() const
{
    const MeshPtr copy = boost::make_shared<Mesh>(m_id, m_name);
    core::utils::UndoUnlessKept undo([&copy] { copy->clearPrimitives(); }); // they hold it
    for (const StreamPtr& stream : m_streams)
    {
        copy->addStream(stream->clone());
    }
    copy->m_vertices = m_vertices;
    for (const IMeshPrimitivePtr& primitive : m_primitives)
    {
        copy->addPrimitive(primitive->clone(copy));
    }
    undo.keep();
    return copy;
}

void Mesh::addStream(const StreamPtr& stream)
{
    if (stream)
    {
        m_streams.push_back(stream);
        m_hasCurrentBV = false;
    }
}

void Mesh::removeStream(const StreamPtr& stream)
{
    const auto found = std::find(m_streams.begin(), m_streams.end(), stream);
    if (found != m_streams.end())
    {
        m_streams.erase(found);
        m_hasCurrentBV = false;
    }
}

StreamPtr Mesh::getStream(const std::string& id) const
{
    const auto found =
        std::find_if(m_streams.begin(), m_streams.end(),
                     [&id](const StreamPtr& stream) { return stream->getID() == id; });
    return found != m_streams.end() ? *found : StreamPtr();
}

const std::vector<StreamPtr>& Mesh::getStreams() const
{
    return m_streams;
}

void Mesh::setStreams(const std::vector<StreamPtr>& streams)
{
    std::vector<StreamPtr> kept;
    std::copy_if(streams.begin(), streams.end(), std::back_inserter(kept),
                 [](const StreamPtr& stream) { return stream != nullptr; });
    m_streams = std::move(kept);
    m_hasCurrentBV = false;
}

void Mesh::clearStreams()
{
    m_streams.clear();
    m_hasCurrentBV = false;
}

void Mesh::replaceStream(const StreamPtr& current, const StreamPtr& stream)
{
    const StreamPtr replaced = current; // the arguments may be entries that are overwritten
    const StreamPtr kept = stream;
    if (!replaced || !kept)
    {
        return;
    }
    forgetBV();
    replaceEntry(m_streams, replaced, kept);
    replaceInMappings(m_vertices, replaced, kept);
    for (const IMeshPrimitivePtr& primitive : m_primitives)
    {
        auto* const base = dynamic_cast<MeshPrimitiveBase*>(primitive.get());
        if (base != nullptr)
        {
            base->replaceStream(replaced, kept);
        }
    }
}

void Mesh::addVerticesMapping(const StreamMapping& mapping)
{
    if (!hasSemantic(m_vertices, mapping.getSemantic()))
    {
        m_vertices.push_back(mapping);
        m_hasCurrentBV = false;
    }
}

const std::vector<StreamMapping>& Mesh::getVertices() const
{
    return m_vertices;
}

void Mesh::setVertices(const std::vector<StreamMapping>& vertices)
{
    std::vector<StreamMapping> kept;
    kept.reserve(vertices.size());
    for (const StreamMapping& mapping : vertices)
    {
        if (!hasSemantic(kept, mapping.getSemantic()))
        {
            kept.push_back(mapping);
        }
    }
    m_vertices.swap(kept);
    m_hasCurrentBV = false;
}

void Mesh::takeStreams(std::vector<StreamPtr> streams, std::vector<StreamMapping> vertices)
{
    m_streams.swap(streams);
    m_vertices.swap(vertices);
    m_hasCurrentBV = false;
}

void Mesh::clearVertices()
{
    m_vertices.clear();
    m_hasCurrentBV = false;
}

void Mesh::cutStreamsTo(std::size_t streams, std::size_t vertices)
{
    const auto at = [](auto& list, std::size_t count)
    { return list.begin() + static_cast<std::ptrdiff_t>(std::min(count, list.size())); };
    m_streams.erase(at(m_streams, streams), m_streams.end());
    m_vertices.erase(at(m_vertices, vertices), m_vertices.end());
    m_hasCurrentBV = false;
}

const std::string& Mesh::getVerticesID() const
{
    return m_verticesID;
}

void Mesh::setVerticesID(const std::string& id)
{
    m_verticesID = id;
}

void Mesh::addPrimitive(const IMeshPrimitivePtr& primitive)
{
    if (primitive)
    {
        m_primitives.push_back(primitive);
        m_hasCurrentBV = false;
    }
}

IMeshPrimitivePtr Mesh::getPrimitive(unsigned int index) const
{
    return index < m_primitives.size() ? m_primitives[index] : IMeshPrimitivePtr();
}

unsigned int Mesh::getPrimitiveCount() const
{
    return static_cast<unsigned int>(m_primitives.size());
}

const std::vector<IMeshPrimitivePtr>& Mesh::getMeshPrimitives() const
{
    return m_primitives;
}

void Mesh::clearPrimitives()
{
    // The last primitive may take this mesh along, so that nothing of it may be touched then.
    m_hasCurrentBV = false;
    std::vector<IMeshPrimitivePtr> released;
    released.swap(m_primitives);
}
} // namespace velmoran::scene
