#pragma once

#include "core/event/EventType.h"
#include "scene/Export.h"

/// The types of the events that the scene library raises, each with its data.
///
/// Data is one string, its fields joined by "," without blanks. The types are
/// made once for the process and may be read from any thread.
namespace velmoran::scene::events
{
using core::event::EventType;

/// "SceneTopologyUpdate": "NodeAdded" or "NodeRemoved", parent's ID, child's ID.
VELMORAN_SCENE_EXPORT const EventType& sceneTopologyUpdate();

/// "NodeTransformationUpdate": node's ID, the 16 floats of its local matrix
/// column by column. A "SceneUpdate" without data follows.
VELMORAN_SCENE_EXPORT const EventType& nodeTransformationUpdate();

/// "SceneUpdate": nothing, or "MaterialList" when the list of materials changed.
VELMORAN_SCENE_EXPORT const EventType& sceneUpdate();

/// "NodeAddedLayer": node's ID, layer's name.
VELMORAN_SCENE_EXPORT const EventType& nodeAddedLayer();

/// "NodeRemovedLayer": node's ID, layer's name.
VELMORAN_SCENE_EXPORT const EventType& nodeRemovedLayer();

/// "NodeAddedLight": node's ID, light's ID.
VELMORAN_SCENE_EXPORT const EventType& nodeAddedLight();

/// "NodeMaterialChanged": node's ID, geometry index, primitive index, material's ID.
VELMORAN_SCENE_EXPORT const EventType& nodeMaterialChanged();

/// "CameraUpdated": camera's ID.
VELMORAN_SCENE_EXPORT const EventType& cameraUpdated();

/// "LightUpdated": light's ID.
VELMORAN_SCENE_EXPORT const EventType& lightUpdated();

/// "GeometryTopologyUpdate": geometry's ID.
VELMORAN_SCENE_EXPORT const EventType& geometryTopologyUpdate();

/// "SyncScene": nothing. The scene changed as a whole; views may redraw.
VELMORAN_SCENE_EXPORT const EventType& syncScene();

/// "SceneSurroundingUpdate": nothing.
VELMORAN_SCENE_EXPORT const EventType& sceneSurroundingUpdate();

/// "SceneNewCamera": SID of the new camera's instance.
VELMORAN_SCENE_EXPORT const EventType& sceneNewCamera();

/// "DisplayMessageAt": text for the user, and the place on the screen; these fields are
/// separated by ", ", as in "Morphing failed., 10, 10".
VELMORAN_SCENE_EXPORT const EventType& displayMessageAt();
} // namespace velmoran::scene::events
