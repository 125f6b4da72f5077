#include "scene/manager/GeometryUsers.h"

#include "scene/deform/InstanceController.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <vector>

namespace velmoran::scene
{
GeometryUsers::GeometryUsers(const SceneManager& scene)
{
    const std::vector<ControllerPtr> library = scene.getControllersLibrary();
    controllers.insert(library.begin(), library.end());
    for (const NodePtr& node : scene.getNodeArray())
    {
        instances.insert(node->getInstancedGeometries().begin(),
                         node->getInstancedGeometries().end());
        for (const InstanceControllerPtr& instance : node->getInstancedControllers())
        {
            instances.insert(instance->getInstanceGeometry());
            controllers.insert(instance->getController());
        }
    }
    instances.erase(InstanceGeometryPtr());
    controllers.erase(ControllerPtr());
}
} // namespace velmoran::scene
