// Listening to events: by a handler, and as a class of one's own.

#include "core/event/EventBase.h"
#include "core/event/EventManager.h"
#include "scene/EventTypes.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <iostream>

using namespace velmoran;
using namespace velmoran::scene;
using core::event::Event;
using core::event::EventBase;
using core::event::EventManagerPtr;

//! [view]
/// A view that wants to know which nodes moved.
class View : public EventBase
{
public:
    explicit View(const EventManagerPtr& events) : EventBase(events)
    {
        registerHandler(events::nodeTransformationUpdate(),
                        [this](const Event& event) { note(event); });
    }

    /// Before any member goes, so that no handler runs on a half destroyed view.
    ~View() override { detachForGood(); }

private:
    void note(const Event& event)
    {
        ++m_moves;
        std::cout << event.getEventData().getArg(0) << " moved, " << m_moves << " in all"
                  << std::endl;
    }

    int m_moves = 0;
};
//! [view]

int main()
{
    const auto events = boost::make_shared<core::event::EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);

    //! [handler]
    EventBase listener(events);
    listener.registerHandler("SceneTopologyUpdate",
                             [](const Event& event)
                             {
                                 const core::event::EventData& data = event.getEventData();
                                 std::cout << data.getArg(0) << ": " << data.getArg(2) << " below "
                                           << data.getArg(1) << std::endl;
                             });
    //! [handler]

    const auto node = boost::make_shared<Node>(scene);
    node->setID("door");
    scene->getRoot()->setID("house");
    scene->getRoot()->addNode(node); // heard at once, on this thread

    {
        const View view(events);
        node->setTranslation(Eigen::Translation3f(1.0F, 0.0F, 0.0F));
    }
    node->setTranslation(Eigen::Translation3f(2.0F, 0.0F, 0.0F)); // the view is gone

    //! [unregister]
    listener.unregister("SceneTopologyUpdate");
    //! [unregister]
    scene->removeNode(node);
    std::cout << "done" << std::endl;
}
