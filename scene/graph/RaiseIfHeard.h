#pragma once

#include "core/event/Event.h"
#include "core/event/EventManager.h"
#include "scene/graph/ISceneContext.h"

#include <boost/weak_ptr.hpp>

#include <string>

namespace velmoran::scene
{
/// The event manager of `scene` when somebody there listens to `type`, else empty: ask
/// before building the text of an event.
inline core::event::EventManagerPtr listenersOf(const boost::weak_ptr<ISceneContext>& scene,
                                                const core::event::EventType& type)
{
    const ISceneContextPtr alive = scene.lock();
    core::event::EventManagerPtr manager =
        alive ? alive->getEventManager() : core::event::EventManagerPtr();
    return manager && manager->hasListeners(type) ? manager : core::event::EventManagerPtr();
}

/// Raises an event through `scene`; does nothing when the scene is gone or nobody
/// listens to this type.
inline void raiseIfHeard(const boost::weak_ptr<ISceneContext>& scene,
                         const core::event::EventType& type, const std::string& data)
{
    const ISceneContextPtr alive = scene.lock();
    if (alive && listenersOf(scene, type))
    {
        alive->triggerEvent(core::event::Event(type, data, ""));
    }
}
} // namespace velmoran::scene
