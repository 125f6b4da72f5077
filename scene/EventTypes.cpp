#include "scene/EventTypes.h"

namespace velmoran::scene::events
{
const EventType& sceneTopologyUpdate()
{
    static const EventType type("SceneTopologyUpdate");
    return type;
}

const EventType& nodeTransformationUpdate()
{
    static const EventType type("NodeTransformationUpdate");
    return type;
}

const EventType& sceneUpdate()
{
    static const EventType type("SceneUpdate");
    return type;
}

const EventType& nodeAddedLayer()
{
    static const EventType type("NodeAddedLayer");
    return type;
}

const EventType& nodeRemovedLayer()
{
    static const EventType type("NodeRemovedLayer");
    return type;
}

const EventType& nodeAddedLight()
{
    static const EventType type("NodeAddedLight");
    return type;
}

const EventType& nodeMaterialChanged()
{
    static const EventType type("NodeMaterialChanged");
    return type;
}

const EventType& cameraUpdated()
{
    static const EventType type("CameraUpdated");
    return type;
}

const EventType& lightUpdated()
{
    static const EventType type("LightUpdated");
    return type;
}

const EventType& geometryTopologyUpdate()
{
    static const EventType type("GeometryTopologyUpdate");
    return type;
}

const EventType& syncScene()
{
    static const EventType type("SyncScene");
    return type;
}

const EventType& sceneSurroundingUpdate()
{
    static const EventType type("SceneSurroundingUpdate");
    return type;
}

const EventType& sceneNewCamera()
{
    static const EventType type("SceneNewCamera");
    return type;
}
} // namespace velmoran::scene::events
