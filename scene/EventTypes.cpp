#include "scene/EventTypes.h"

namespace velmoran::scene::events
{
// Never deleted: a scene that a static object holds may raise events after any
// destructor that would do it.

const EventType& sceneTopologyUpdate()
{
    static const EventType& type = *new EventType("SceneTopologyUpdate");
    return type;
}

const EventType& nodeTransformationUpdate()
{
    static const EventType& type = *new EventType("NodeTransformationUpdate");
    return type;
}

const EventType& sceneUpdate()
{
    static const EventType& type = *new EventType("SceneUpdate");
    return type;
}

const EventType& nodeAddedLayer()
{
    static const EventType& type = *new EventType("NodeAddedLayer");
    return type;
}

const EventType& nodeRemovedLayer()
{
    static const EventType& type = *new EventType("NodeRemovedLayer");
    return type;
}

const EventType& nodeAddedLight()
{
    static const EventType& type = *new EventType("NodeAddedLight");
    return type;
}

const EventType& nodeMaterialChanged()
{
    static const EventType& type = *new EventType("NodeMaterialChanged");
    return type;
}

const EventType& cameraUpdated()
{
    static const EventType& type = *new EventType("CameraUpdated");
    return type;
}

const EventType& lightUpdated()
{
    static const EventType& type = *new EventType("LightUpdated");
    return type;
}

const EventType& geometryTopologyUpdate()
{
    static const EventType& type = *new EventType("GeometryTopologyUpdate");
    return type;
}

const EventType& syncScene()
{
    static const EventType& type = *new EventType("SyncScene");
    return type;
}

const EventType& sceneSurroundingUpdate()
{
    static const EventType& type = *new EventType("SceneSurroundingUpdate");
    return type;
}

const EventType& sceneNewCamera()
{
    static const EventType& type = *new EventType("SceneNewCamera");
    return type;
}

const EventType& displayMessageAt()
{
    static const EventType& type = *new EventType("DisplayMessageAt");
    return type;
}
} // namespace velmoran::scene::events
