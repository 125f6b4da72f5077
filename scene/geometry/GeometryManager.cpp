#include "scene/geometry/GeometryManager.h"

#include "core/event/EventManager.h"
#include "core/logger/BasicDecorator.h"
#include "core/logger/FileWriterFactory.h"
#include "core/logger/IWriter.h"
#include "core/utils/AllOrNothing.h"
#include "scene/EventTypes.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/MeshPrimitiveBase.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <new>
#include <set>
#include <utility>

namespace velmoran::scene
{
namespace
{
/// How many of a mesh's own primitives hold it.
long countHoldingPrimitives(const Mesh& mesh)
{
    // A primitive may stand in the list twice. Lists are short, and what goes when memory
    // has run out must not ask for more.
    const std::vector<IMeshPrimitivePtr>& primitives = mesh.getMeshPrimitives();
    long holders = 0;
    for (auto primitive = primitives.begin(); primitive != primitives.end(); ++primitive)
    {
        const auto* base = dynamic_cast<const MeshPrimitiveBase*>(primitive->get());
        if (base != nullptr && base->getMesh().get() == &mesh &&
            std::find(primitives.begin(), primitive, *primitive) == primitive)
        {
            ++holders;
        }
    }
    return holders;
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
    keepOneHandleOfEach();

    // A mesh that is held by a primitive of another one is free when that one is.
    std::size_t before = 0;
    do
    {
        before = m_geometries.size();
        for (auto entry = m_geometries.begin(); entry != m_geometries.end();)
        {
            entry = letGoOf(entry->second) ? m_geometries.erase(entry) : std::next(entry);
        }
    } while (m_geometries.size() < before);
}

/// Empties the other entries of geometries that were added under several IDs.
void GeometryManager::keepOneHandleOfEach()
{
    try
    {
        std::set<const IGeometry*> met;
        for (auto& [id, geometry] : m_geometries)
        {
            if (!met.insert(geometry.get()).second)
            {
                geometry.reset();
            }
        }
    }
    catch (const std::bad_alloc&) // such a one may stay allocated then
    {
    }
}

bool GeometryManager::addGeometry(const IGeometryPtr& geometry)
{
    return geometry && m_geometries.try_emplace(geometry->getID(), geometry).second;
}

bool GeometryManager::removeGeometry(const std::string& id)
{
    const auto entry = m_geometries.find(id);
    if (entry == m_geometries.end())
    {
        return false;
    }
    IGeometryPtr removed = std::move(entry->second);
    m_geometries.erase(entry);
    letGo(std::move(removed));
    return true;
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
    const auto* mesh = dynamic_cast<const Mesh*>(geometry.get());
    if (mesh != nullptr && entry->second->getType() == IGeometry::MESH)
    {
        for (const IMeshPrimitivePtr& primitive : mesh->getMeshPrimitives())
        {
            symbols.push_back(primitive->getMaterialSymbol());
        }
    }
    geometry->setID(entry->second->getID());
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
    GeometryMap incoming;
    // What is left at the end: those whose ID is taken; all, if memory runs out before.
    const core::utils::UndoUnlessKept letGoOfTheRest(
        [&incoming]
        {
            for (auto& [id, geometry] : incoming)
            {
                letGo(std::exchange(geometry, IGeometryPtr()));
            }
        });
    collectIncoming(other->m_geometries, discardRepeated, renamed, incoming);
    const std::string message =
        "[INFO] Added " + std::to_string(incoming.size()) + " new geometries";
    m_geometries.merge(incoming);
    m_logger << message;
    return renamed;
}

/// What a merge adds unless its ID is taken: other libraries' geometries or clones.
void GeometryManager::collectIncoming(const GeometryMap& others, bool discardRepeated,
                                      std::map<std::string, std::string>& renamed,
                                      GeometryMap& incoming)
{
    for (const auto& [id, geometry] : others)
    {
        if (m_geometries.count(id) == 0)
        {
            // A clone that was renamed to this ID gives way.
            letGo(std::exchange(incoming[id], geometry));
            continue;
        }
        if (discardRepeated)
        {
            m_logger << "[INFO] Found repeated geometry ID and discarded new one: " + id;
            continue;
        }
        const std::string newID = id + "__renamed__";
        IGeometryPtr& copy = incoming[newID];
        copy = geometry->clone();
        copy->setID(newID);
        renamed[id] = newID;
        m_logger << "[INFO] Found repeated geometry ID. Renamed geometry " + id + " to " + newID;
    }
}

bool GeometryManager::letGo(IGeometryPtr last)
{
    return letGoOf(last);
}

/// As `letGo`, of a handle that stays: it is the last one, too.
bool GeometryManager::letGoOf(const IGeometryPtr& last)
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

void GeometryManager::recalculateVertexNormals(const std::string& id)
{
    const IGeometryPtr geometry = getGeometry(id);
    if (geometry)
    {
        geometry->recalculateVertexNormals();
        announceChange(id);
    }
}

void GeometryManager::subDivideGeometry(const std::string& id, const ControllerPtr& controller)
{
    const IGeometryPtr geometry = getGeometry(id);
    if (geometry)
    {
        geometry->subDivide(controller);
        announceChange(id);
    }
}

void GeometryManager::announceChange(const std::string& id)
{
    const core::event::EventManagerPtr manager = getEventManager();
    if (manager && manager->hasListeners(events::geometryTopologyUpdate()))
    {
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
