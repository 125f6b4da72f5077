#include "scene/geometry/Mesh.h"

#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamList.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace velmoran::scene
{
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
    for (const StreamPtr& stream : m_streams)
    {
        copy->addStream(stream->clone());
    }
    copy->m_vertices = m_vertices;
    for (const IMeshPrimitivePtr& primitive : m_primitives)
    {
        copy->addPrimitive(primitive->clone(copy));
    }
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
    const bool isPresent = std::any_of(m_vertices.begin(), m_vertices.end(),
                                       [&mapping](const StreamMapping& present)
                                       { return present.getSemantic() == mapping.getSemantic(); });
    if (!isPresent)
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
    const std::vector<StreamMapping> mappings = vertices; // may be this mesh's own list
    clearVertices();
    for (const StreamMapping& mapping : mappings)
    {
        addVerticesMapping(mapping);
    }
}

void Mesh::clearVertices()
{
    m_vertices.clear();
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
