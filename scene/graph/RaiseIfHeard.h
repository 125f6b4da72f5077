#pragma once

#include "core/event/Event.h"
#include "core/event/EventManager.h"
#include "scene/graph/ISceneContext.h"

#include <boost/weak_ptr.hpp>

#include <string>

namespace velmoran::scene
{
/// Raises an event through `scene`; does nothing when the scene is gone or nobody
/// listens to this type.
inline void raiseIfHeard(const boost::weak_ptr<ISceneContext>& scene,
                         const core::event::EventType& type, const std::string& data)
{
    const ISceneContextPtr alive = scene.lock();
    if (!alive)
    {
        return;
    }
    const core::event::EventManagerPtr eventManager = alive->getEventManager();
    if (eventManager && eventManager->hasListeners(type))
    {
        alive->triggerEvent(core::event::Event(type, data, ""));
    }
}
} // namespace velmoran::scene
