#include "scene/geometry/GeometryManager.h"

#include "core/logger/BasicDecorator.h"
#include "core/logger/FileWriterFactory.h"
#include "core/logger/IWriter.h"
#include "scene/EventTypes.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/MeshPrimitiveBase.h"

#include <boost/make_shared.hpp>

#include <set>
#include <utility>

namespace velmoran::scene
{
namespace
{
/// How many of a mesh's own primitives hold it.
long countHoldingPrimitives(const Mesh& mesh)
{
    std::set<const MeshPrimitiveBase*> holders; // a primitive may stand in the list twice
    for (const IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
    {
        const auto* base = dynamic_cast<const MeshPrimitiveBase*>(primitive.get());
        if (base != nullptr && base->getMesh().get() == &mesh)
        {
            holders.insert(base);
        }
    }
    return static_cast<long>(holders.size());
}

/// Clears the primitives of a mesh that only `last` and these primitives hold. Returns
/// false when somebody else holds the geometry.
bool letGo(const IGeometryPtr& last)
{
    auto* mesh = dynamic_cast<Mesh*>(last.get());
    const long holders = mesh != nullptr ? countHoldingPrimitives(*mesh) : 0;
    if (last.use_count() > 1 + holders)
    {
        return false;
    }
    if (mesh != nullptr)
    {
        mesh->clearPrimitives();
    }
    return true;
}
} // namespace

GeometryManager::GeometryManager(const core::event::EventManagerPtr& eventManager)
    : EventBase(eventManager)
{
    using namespace core::logger;
    const IWriterPtr writer =
        FileWriterFactory::getInstance()->getFileWriter("GeometryManager.log");
    writer->setDecorator(boost::make_shared<BasicDecorator>());
    m_logger.addWriter(writer);
}

GeometryManager::~GeometryManager()
{
    // One handle of each geometry, also of those that were added under two IDs.
    std::set<IGeometryPtr> held;
    for (const auto& [id, geometry] : m_geometries)
    {
        held.insert(geometry);
    }
    m_geometries.clear();

    // A mesh that is held by a primitive of another one is free when that one is.
    std::size_t before = 0;
    do
    {
        before = held.size();
        for (auto geometry = held.begin(); geometry != held.end();)
        {
            geometry = letGo(*geometry) ? held.erase(geometry) : std::next(geometry);
        }
    } while (held.size() < before);
}

bool GeometryManager::addGeometry(const IGeometryPtr& geometry)
{
    return geometry && m_geometries.try_emplace(geometry->getID(), geometry).second;
}

IGeometryPtr GeometryManager::getGeometry(const std::string& id) const
{
    const auto found = m_geometries.find(id);
    return found != m_geometries.end() ? found->second : IGeometryPtr();
}

void GeometryManager::getGeometries(std::vector<IGeometryPtr>& geometries) const
{
    for (const auto& [id, geometry] : m_geometries)
    {
        geometries.push_back(geometry);
    }
}

std::vector<std::string> GeometryManager::getIDs() const
{
    std::vector<std::string> ids;
    for (const auto& [id, geometry] : m_geometries)
    {
        ids.push_back(id);
    }
    return ids;
}

unsigned int GeometryManager::getCount() const
{
    return static_cast<unsigned int>(m_geometries.size());
}

IGeometry::Type GeometryManager::getGeometryType(const std::string& id) const
{
    const IGeometryPtr geometry = getGeometry(id);
    return geometry ? geometry->getType() : IGeometry::INVALID;
}

std::vector<std::string> GeometryManager::replaceGeometry(const std::string& id,
                                                          const IGeometryPtr& geometry)
{
    std::vector<std::string> symbols;
    const auto entry = m_geometries.find(id);
    if (!geometry || entry == m_geometries.end())
    {
        return symbols;
    }
    geometry->setID(entry->second->getID());
    const auto* mesh = dynamic_cast<const Mesh*>(geometry.get());
    if (mesh != nullptr && entry->second->getType() == IGeometry::MESH)
    {
        for (const IMeshPrimitivePtr& primitive : mesh->getMeshPrimitives())
        {
            symbols.push_back(primitive->getMaterialSymbol());
        }
    }
    letGo(std::exchange(entry->second, geometry));
    return symbols;
}

std::map<std::string, std::string>
GeometryManager::mergeGeometries(const boost::shared_ptr<GeometryManager>& other,
                                 bool discardRepeated)
{
    std::map<std::string, std::string> renamed;
    if (!other || other.get() == this)
    {
        return renamed;
    }
    GeometryMap incoming = collectIncoming(other->m_geometries, discardRepeated, renamed);
    for (const auto& [id, geometry] : incoming)
    {
        if (!m_geometries.try_emplace(id, geometry).second)
        {
            letGo(geometry);
        }
    }
    m_logger << "[INFO] Added " + std::to_string(incoming.size()) + " new geometries";
    return renamed;
}

/// What a merge adds unless its ID is taken: other libraries' geometries or clones.
GeometryManager::GeometryMap
GeometryManager::collectIncoming(const GeometryMap& others, bool discardRepeated,
                                 std::map<std::string, std::string>& renamed)
{
    GeometryMap incoming;
    for (const auto& [id, geometry] : others)
    {
        if (m_geometries.count(id) == 0)
        {
            // A clone that was renamed to this ID gives way.
            const IGeometryPtr replaced = std::exchange(incoming[id], geometry);
            letGo(replaced);
            continue;
        }
        if (discardRepeated)
        {
            m_logger << "[INFO] Found repeated geometry ID and discarded new one: " + id;
            continue;
        }
        const std::string newID = id + "__renamed__";
        const IGeometryPtr copy = geometry->clone();
        copy->setID(newID);
        incoming[newID] = copy;
        renamed[id] = newID;
        m_logger << "[INFO] Found repeated geometry ID. Renamed geometry " + id + " to " + newID;
    }
    return incoming;
}

void GeometryManager::recalculateVertexNormals(const std::string& id)
{
    const IGeometryPtr geometry = getGeometry(id);
    if (geometry)
    {
        geometry->recalculateVertexNormals();
        triggerEvent(events::geometryTopologyUpdate().getName(), id);
    }
}

void GeometryManager::subDivideGeometry(const std::string& id, const ControllerPtr& controller)
{
    const IGeometryPtr geometry = getGeometry(id);
    if (geometry)
    {
        geometry->subDivide(controller);
        triggerEvent(events::geometryTopologyUpdate().getName(), id);
    }
}

void GeometryManager::print()
{
    for (const auto& [id, geometry] : m_geometries)
    {
        geometry->print();
    }
}
} // namespace velmoran::scene
