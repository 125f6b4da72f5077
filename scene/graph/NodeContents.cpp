// What hangs at a node: instances and layers.

#include "core/utils/AllOrNothing.h"
#include "scene/EventTypes.h"
#include "scene/deform/InstanceController.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/HandleList.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Light.h"
#include "scene/graph/Node.h"
#include "scene/graph/RaiseIfHeard.h"
#include "scene/material/Material.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace velmoran::scene
{
using core::event::EventManagerPtr;
using core::event::EventType;

// Instances

void Node::addInstanceCamera(const CameraPtr& camera)
{
    append(m_instanceCameras, camera);
}

unsigned int Node::getInstanceCameraCount() const
{
    return static_cast<unsigned int>(m_instanceCameras.size());
}

CameraPtr Node::getInstanceCamera(unsigned int index) const
{
    return entryAt(m_instanceCameras, index);
}

void Node::addInstanceLight(const LightPtr& light)
{
    if (!light)
    {
        return;
    }
    m_instanceLights.push_back(light);
    const EventManagerPtr listeners = listenersOf(m_sceneManager, events::nodeAddedLight());
    if (listeners)
    {
        listeners->triggerEvent(events::nodeAddedLight().getName(), m_id + "," + light->getID());
    }
}

unsigned int Node::getInstanceLightCount() const
{
    return static_cast<unsigned int>(m_instanceLights.size());
}

LightPtr Node::getInstanceLight(unsigned int index) const
{
    return entryAt(m_instanceLights, index);
}

void Node::addInstanceGeometry(const InstanceGeometryPtr& instance)
{
    append(m_instanceGeometries, instance);
}

void Node::removeInstanceGeometry(const InstanceGeometryPtr& instance)
{
    const auto found =
        std::find(m_instanceGeometries.begin(), m_instanceGeometries.end(), instance);
    if (found != m_instanceGeometries.end())
    {
        m_instanceGeometries.erase(found);
    }
}

const std::vector<InstanceGeometryPtr>& Node::getInstancedGeometries() const
{
    return m_instanceGeometries;
}

unsigned int Node::getInstanceGeometryCount() const
{
    return static_cast<unsigned int>(m_instanceGeometries.size());
}

InstanceGeometryPtr Node::getInstanceGeometry(unsigned int index) const
{
    return entryAt(m_instanceGeometries, index);
}

std::vector<InstanceGeometryPtr> Node::getAllInstancedGeometries() const
{
    std::vector<InstanceGeometryPtr> all = m_instanceGeometries;
    for (const InstanceControllerPtr& controller : m_instanceControllers)
    {
        all.push_back(controller->getInstanceGeometry());
    }
    return all;
}

void Node::addInstanceController(const InstanceControllerPtr& instance)
{
    append(m_instanceControllers, instance);
}

const std::vector<InstanceControllerPtr>& Node::getInstancedControllers() const
{
    return m_instanceControllers;
}

unsigned int Node::getInstanceControllerCount() const
{
    return static_cast<unsigned int>(m_instanceControllers.size());
}

InstanceControllerPtr Node::getInstanceController(unsigned int index) const
{
    return entryAt(m_instanceControllers, index);
}

void Node::setMaterial(const MaterialPtr& material, unsigned int geometryIndex,
                       unsigned int primitiveIndex)
{
    const InstanceGeometryPtr instance = entryAt(getAllInstancedGeometries(), geometryIndex);
    const auto mesh = instance ? boost::dynamic_pointer_cast<Mesh>(instance->getGeometry())
                               : boost::shared_ptr<Mesh>();
    const IMeshPrimitivePtr primitive =
        mesh ? mesh->getPrimitive(primitiveIndex) : IMeshPrimitivePtr();
    if (!material || !primitive)
    {
        return;
    }
    const MaterialPtr kept = material; // the argument may live in the list that is rebuilt
    instance->setMaterial(primitive->getMaterialSymbol(), kept);
    const EventManagerPtr listeners = listenersOf(m_sceneManager, events::nodeMaterialChanged());
    if (listeners)
    {
        listeners->triggerEvent(events::nodeMaterialChanged().getName(),
                                m_id + "," + std::to_string(geometryIndex) + "," +
                                    std::to_string(primitiveIndex) + "," + kept->getMaterialID());
    }
}

// Layers

void Node::addToLayer(int layerID)
{
    m_layers.insert(layerID);
    raiseLayerEvent(events::nodeAddedLayer(), layerID);
}

void Node::addToLayer(const std::string& layerName)
{
    const ISceneContextPtr scene = m_sceneManager.lock();
    if (scene)
    {
        const LayerManagerPtr layers = scene->getLayerManager();
        core::utils::UndoUnlessKept undo([&layers, count = layers->getLayerCount()]
                                         { layers->removeLayersFrom(count); });
        const int layerID = layers->getLayerID(layerName);
        m_layers.insert(layerID);
        undo.keep();
        raiseLayerEvent(events::nodeAddedLayer(), layerID);
    }
}

void Node::removeFromLayer(int layerID)
{
    m_layers.erase(layerID);
    raiseLayerEvent(events::nodeRemovedLayer(), layerID);
}

void Node::removeFromLayer(const std::string& layerName)
{
    const ISceneContextPtr scene = m_sceneManager.lock();
    if (scene)
    {
        removeFromLayer(scene->getLayerManager()->getLayerID(layerName));
    }
}

bool Node::inLayer(int layerID) const
{
    return m_layers.count(layerID) != 0;
}

bool Node::inLayer(const std::string& layerName) const
{
    const ISceneContextPtr scene = m_sceneManager.lock();
    return scene && inLayer(scene->getLayerManager()->getLayerID(layerName));
}

const std::set<int>& Node::getLayers() const
{
    return m_layers;
}

std::string Node::getLayerName(int layerID) const
{
    const ISceneContextPtr scene = m_sceneManager.lock();
    return scene ? scene->getLayerManager()->getLayerName(layerID) : std::string();
}

std::vector<std::string> Node::getLayersNames() const
{
    std::vector<std::string> names;
    names.reserve(m_layers.size());
    for (const int layerID : m_layers)
    {
        names.push_back(getLayerName(layerID));
    }
    return names;
}

bool Node::isVisible() const
{
    return !inLayer(0);
}

void Node::setVisible(bool visible)
{
    if (visible)
    {
        removeFromLayer(0);
    }
    else
    {
        addToLayer(0);
    }
}

void Node::raiseLayerEvent(const EventType& type, int layerID) const
{
    const EventManagerPtr listeners = listenersOf(m_sceneManager, type);
    if (listeners)
    {
        listeners->triggerEvent(type.getName(), m_id + "," + getLayerName(layerID));
    }
}
} // namespace velmoran::scene
