#include "scene/manager/SceneManager.h"

#include "core/event/EventManager.h"
#include "core/logger/BasicDecorator.h"
#include "core/logger/FileWriterFactory.h"
#include "core/logger/IWriter.h"
#include "core/system/MillisecClock.h"
#include "core/utils/AllOrNothing.h"
#include "scene/EventTypes.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/manager/ISceneController.h"
#include "scene/manager/IdentifierRegister.h"
#include "scene/manager/NodeIndex.h"
#include "scene/manager/SceneWorker.h"
#include "scene/material/Effect.h"
#include "scene/material/Material.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace velmoran::scene
{
using core::event::Event;
using core::event::EventManagerPtr;
using core::event::EventType;

SceneManager::SceneManager(const EventManagerPtr& eventManager)
    : EventBase(eventManager),
      m_treeRevision(boost::make_shared<TreeRevision>(0)),
      m_nodeIndex(std::make_unique<NodeIndex>(m_treeRevision)),
      m_geometryManager(boost::make_shared<GeometryManager>(EventManagerPtr())),
      m_layerManager(boost::make_shared<LayerManager>()),
      m_sceneName("DefaultScene"),
      m_sceneID("defaultSceneID"),
      m_identifiers(std::make_unique<IdentifierRegister>())
{
    const core::logger::IWriterPtr writer =
        core::logger::FileWriterFactory::getInstance()->getFileWriter("SceneManager.log");
    writer->setDecorator(boost::make_shared<core::logger::BasicDecorator>());
    m_logger.addWriter(writer);

    registerEventHandlers();
    m_effects.add(boost::make_shared<Effect>("defaultEffect", "default.cgfx", ""));
    addMaterial(boost::make_shared<Material>("defaultMaterial", "defaultEffect"));

    m_worker = std::make_unique<SceneWorker>(boost::make_shared<core::system::MillisecClock>(true),
                                             eventManager);
}

SceneManager::~SceneManager()
{
    m_worker->stop();
    detachForGood();
    m_geometryManager->setEventManager(EventManagerPtr());
    m_worker->setEventManager(EventManagerPtr());
    // Nodes and scene controllers hold geometry: its manager can tell who else does when
    // they are gone, which on the worker itself is after this turn.
    m_worker->clearSceneControllers();
    m_root.reset();
    m_worker->holdForTurn(m_geometryManager);
}

// Life and worker thread

void SceneManager::stop()
{
    m_worker->stop();
    setEventManager(EventManagerPtr());
}

EventManagerPtr SceneManager::getEventManager()
{
    return EventBase::getEventManager();
}

void SceneManager::setEventManager(boost::shared_ptr<core::event::EventManager> eventManager)
{
    EventBase::setEventManager(std::move(eventManager));
    shareEventManager();
}

/// Gives this scene's event manager to the geometry manager and the worker. Another thread
/// may replace any of them meanwhile: in the end all three have the same.
void SceneManager::shareEventManager()
{
    EventManagerPtr current;
    do
    {
        current = getEventManager();
        getGeometryManager()->setEventManager(current);
        m_worker->setEventManager(current);
    } while (getEventManager() != current);
}

void SceneManager::triggerEvent(Event event)
{
    EventBase::triggerEvent(std::move(event));
}

void SceneManager::lockScene()
{
    m_worker->lockScene();
}

void SceneManager::unlockScene()
{
    m_worker->unlockScene();
}

void SceneManager::addSceneController(const ISceneControllerPtr& controller)
{
    if (!controller)
    {
        return;
    }
    const ISceneControllerPtr kept = controller;
    m_worker->addSceneController(kept);
    const boost::shared_ptr<SceneManager> self = weak_from_this().lock();
    if (self)
    {
        kept->attach(self);
    }
}

void SceneManager::removeSceneController(const ISceneControllerPtr& controller)
{
    if (controller)
    {
        m_worker->removeSceneController(controller);
    }
}

void SceneManager::setClock(const core::system::IClockPtr& clock)
{
    if (clock)
    {
        m_worker->setClock(clock);
    }
}

core::system::IClockPtr SceneManager::getClock() const
{
    return m_worker->getClock();
}

void SceneManager::addEvaluator(const EvaluatorPtr& evaluator)
{
    if (evaluator)
    {
        m_evaluators.push_back(evaluator);
    }
}

void SceneManager::removeEvaluator(const EvaluatorPtr& evaluator)
{
    const auto found = std::find(m_evaluators.begin(), m_evaluators.end(), evaluator);
    if (found != m_evaluators.end())
    {
        m_evaluators.erase(found);
    }
}

unsigned int SceneManager::getEvaluatorsCount() const
{
    return static_cast<unsigned int>(m_evaluators.size());
}

EvaluatorPtr SceneManager::getEvaluatorAt(unsigned int index) const
{
    return index < m_evaluators.size() ? m_evaluators[index] : EvaluatorPtr();
}

// Parts of the scene

GeometryManagerPtr SceneManager::getGeometryManager() const
{
    const std::lock_guard<std::mutex> lock(m_geometryManagerMutex);
    return m_geometryManager;
}

void SceneManager::setGeometryManager(const GeometryManagerPtr& geometryManager)
{
    if (!geometryManager)
    {
        return;
    }
    GeometryManagerPtr installed = geometryManager;
    const auto exchange = [this, &installed]
    {
        const std::lock_guard<std::mutex> lock(m_geometryManagerMutex);
        m_geometryManager.swap(installed);
    };
    core::utils::UndoUnlessKept undo([this, mark = m_identifiers->getMark()]
                                     { m_identifiers->returnTo(mark); });
    addGeometryIDs(*installed);
    exchange();
    core::utils::UndoUnlessKept undoExchange(exchange);
    shareEventManager();
    undoExchange.keep();
    undo.keep();
}

LayerManagerPtr SceneManager::getLayerManager()
{
    return m_layerManager;
}

AnimationManagerPtr SceneManager::getAnimationManager() const
{
    return m_animationManager;
}

TreeRevisionPtr SceneManager::getTreeRevision() const
{
    return m_treeRevision;
}

// Identifiers and settings

std::string SceneManager::generateID()
{
    return m_identifiers->generate();
}

void SceneManager::addID(std::string id)
{
    m_identifiers->record(std::move(id));
}

void SceneManager::addGeometryIDs(const GeometryManager& geometries)
{
    for (std::string& id : geometries.getIDs())
    {
        addID(std::move(id));
    }
}

void SceneManager::setSceneID(const std::string& id)
{
    std::string kept = id;
    addID(id);
    m_sceneID.swap(kept);
}

const std::string& SceneManager::getSceneID() const
{
    return m_sceneID;
}

void SceneManager::setSceneName(const std::string& name)
{
    m_sceneName = name;
}

const std::string& SceneManager::getSceneName() const
{
    return m_sceneName;
}

void SceneManager::setMeterUnit(float meters)
{
    if (meters >= 0.0F)
    {
        m_meterUnit = meters;
    }
}

float SceneManager::getMeterUnit() const
{
    return m_meterUnit;
}

void SceneManager::setUpAxis(UpAxis axis)
{
    m_upAxis = axis;
}

UpAxis SceneManager::getUpAxis() const
{
    return m_upAxis;
}

// Node tree

NodePtr SceneManager::getRoot()
{
    if (!m_root)
    {
        setRoot(boost::make_shared<Node>(shared_from_this()));
    }
    return m_root;
}

void SceneManager::setRoot(const NodePtr& root)
{
    m_treeRevision->fetch_add(1);
    m_root = root;
}

NodePtr SceneManager::getNodeByID(const std::string& id) const
{
    return m_nodeIndex->find(id, m_root);
}

NodePtr SceneManager::getNodeByID(const std::string& id, const NodePtr& from) const
{
    return from ? from->findByID(id) : NodePtr();
}

NodePtr SceneManager::getNodeByName(const std::string& name) const
{
    return getNodeByName(name, m_root);
}

NodePtr SceneManager::getNodeByName(const std::string& name, const NodePtr& from) const
{
    return from ? from->findByName(name) : NodePtr();
}

std::vector<NodePtr> SceneManager::getNodeArray() const
{
    return getNodeArray(m_root);
}

std::vector<NodePtr> SceneManager::getNodeArray(const NodePtr& from) const
{
    return from ? from->getNodesBelow() : std::vector<NodePtr>();
}

void SceneManager::removeNode(const NodePtr& node)
{
    const NodePtr parent = node ? node->getParent() : NodePtr();
    if (parent)
    {
        const boost::shared_ptr<SceneManager> self = weak_from_this().lock();
        parent->removeChild(node);
        raise(events::sceneUpdate(), "");
    }
}

void SceneManager::removeNodeByID(const std::string& name)
{
    removeNode(getNodeByName(name));
}

void SceneManager::raise(const EventType& type, const std::string& data)
{
    const EventManagerPtr manager = getEventManager();
    if (manager && manager->hasListeners(type))
    {
        triggerEvent(Event(type, data, ""));
    }
}
} // namespace velmoran::scene
