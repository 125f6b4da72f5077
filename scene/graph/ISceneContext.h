#pragma once

#include "core/Forward.h"
#include "scene/Export.h"
#include "scene/Forward.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace velmoran::scene
{
/// Counts the changes of one scene's nodes: children added or removed, IDs set.
///
/// Shared by a scene and all of its nodes, so that a node whose scene is gone
/// can still tell whoever looks at its tree that something changed.
using TreeRevision = std::atomic<std::uint64_t>;
using TreeRevisionPtr = boost::shared_ptr<TreeRevision>;

/// What nodes, cameras and lights see of the scene that owns them.
///
/// `SceneManager` implements it: wherever a handle to a context is asked for,
/// a `boost::shared_ptr<SceneManager>` is passed. Scene objects remember it
/// weakly; once it is gone they raise no events and record no identifiers.
class VELMORAN_SCENE_EXPORT ISceneContext
{
public:
    virtual ~ISceneContext();

    /// The event manager on which changes are announced; empty when none is set.
    virtual core::event::EventManagerPtr getEventManager() = 0;

    /// Raises `event` through the scene's event base; dropped without event manager.
    /// Nodes, cameras and lights ask the event manager first whether anybody listens.
    virtual void triggerEvent(core::event::Event event) = 0;

    /// Records an identifier that is in use, so that none equal to it is generated.
    virtual void addID(std::string id) = 0;

    /// The scene's layers; never empty.
    virtual LayerManagerPtr getLayerManager() = 0;

    /// The counter that every such change of this scene's nodes moves on; never empty,
    /// the same for the context's whole life.
    virtual TreeRevisionPtr getTreeRevision() const = 0;
};
} // namespace velmoran::scene
