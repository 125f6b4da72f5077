#include "scene/manager/StreamUsers.h"

#include "scene/deform/Controller.h"
#include "scene/deform/Morph.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/manager/GeometryUsers.h"
#include "scene/manager/SceneManager.h"

#include <vector>

namespace velmoran::scene
{
StreamUsers::StreamUsers(const SceneManager& scene)
{
    std::vector<IGeometryPtr> library;
    scene.getGeometryManager()->getGeometries(library);
    m_geometries.insert(library.begin(), library.end());
    const GeometryUsers users(scene);
    for (const InstanceGeometryPtr& instance : users.instances)
    {
        m_geometries.insert(instance->getGeometry());
    }
    for (const ControllerPtr& controller : users.controllers)
    {
        const SkinPtr skin = controller->getSkin();
        if (skin)
        {
            m_geometries.insert(skin->getSourceGeometry());
            m_skins.insert(skin);
        }
        if (controller->getMorph())
        {
            m_geometries.insert(controller->getMorph()->getSourceGeometry());
        }
    }
}

void StreamUsers::replace(const StreamPtr& current, const StreamPtr& stream) const
{
    for (const SkinPtr& skin : m_skins)
    {
        skin->replaceStream(current, stream);
    }
    for (const IGeometryPtr& geometry : m_geometries)
    {
        auto* const mesh = dynamic_cast<Mesh*>(geometry.get());
        if (mesh != nullptr)
        {
            mesh->replaceStream(current, stream);
        }
    }
}
} // namespace velmoran::scene
