#pragma once

#include "core/event/EventBase.h"
#include "core/event/EventManager.h"
#include "scene/EventTypes.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace velmoran::scene
{
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

template <typename Handle>
std::vector<std::string> idsOf(const std::vector<Handle>& list)
{
    std::vector<std::string> ids;
    for (const Handle& each : list)
    {
        ids.push_back(each->getID());
    }
    return ids;
}

/// Writes down every event that a scene raises, as "type" or "type:data".
class EventRecorder : public core::event::EventBase
{
public:
    explicit EventRecorder(const core::event::EventManagerPtr& manager) : EventBase(manager)
    {
        for (const core::event::EventType& type :
             {events::sceneTopologyUpdate(), events::nodeTransformationUpdate(),
              events::sceneUpdate(), events::nodeAddedLayer(), events::nodeRemovedLayer(),
              events::nodeAddedLight(), events::nodeMaterialChanged(), events::cameraUpdated(),
              events::lightUpdated(), events::geometryTopologyUpdate(), events::syncScene(),
              events::sceneSurroundingUpdate(), events::sceneNewCamera(),
              events::displayMessageAt()})
        {
            registerToListen(type);
        }
    }

    ~EventRecorder() override { setEventManager(core::event::EventManagerPtr()); }

    void handleEvent(core::event::Event event) override
    {
        const std::string& data = event.getEventData().getData();
        log.push_back(event.getEventType().getName() + (data.empty() ? "" : ":" + data));
    }

    /// What was written since the last call.
    std::vector<std::string> take()
    {
        std::vector<std::string> taken;
        taken.swap(log);
        return taken;
    }

    std::size_t count(const std::string& prefix) const
    {
        std::size_t result = 0;
        for (const std::string& entry : log)
        {
            result += entry.compare(0, prefix.size(), prefix) == 0 ? 1U : 0U;
        }
        return result;
    }

    std::vector<std::string> log;
};

/// A scene with a root called "root", and a recorder of its events. The recorder runs
/// on the threads that raise; nothing here lets the worker raise.
struct SceneUnderTest
{
    SceneUnderTest()
    {
        manager->setRoot(makeNode("root"));
        events.take();
    }

    NodePtr makeNode(const std::string& id) const
    {
        const NodePtr node = boost::make_shared<Node>(manager);
        node->setID(id);
        return node;
    }

    /// A new node `id` below the node `parent`.
    NodePtr addNode(const std::string& parent, const std::string& id) const
    {
        const NodePtr node = makeNode(id);
        manager->getNodeByID(parent)->addNode(node);
        return node;
    }

    core::event::EventManagerPtr eventManager = boost::make_shared<core::event::EventManager>();
    EventRecorder events{eventManager};
    SceneManagerPtr manager = boost::make_shared<SceneManager>(eventManager);
};
} // namespace velmoran::scene
