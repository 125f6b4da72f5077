#include "scene/manager/SceneAttempt.h"

#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"

namespace velmoran::scene
{
SceneAttempt::SceneAttempt(SceneManager& scene)
    : m_scene(scene),
      m_before{scene.m_images.count(),  scene.m_effects.count(),         scene.m_materials.count(),
               scene.m_cameras.count(), scene.m_cameraInstances.count(), scene.m_lights.count()},
      m_identifiers(scene.m_identifiers->getMark()),
      m_layerCount(scene.m_layerManager->getLayerCount()),
      m_hadRoot(scene.m_root != nullptr)
{
}

SceneAttempt::~SceneAttempt()
{
    if (m_isKept)
    {
        return;
    }
    removeChildren();
    if (!m_hadRoot)
    {
        m_scene.setRoot(NodePtr());
    }
    m_scene.m_layerManager->removeLayersFrom(m_layerCount);
    m_scene.m_images.cutTo(m_before.images);
    m_scene.m_effects.cutTo(m_before.effects);
    m_scene.m_materials.cutTo(m_before.materials);
    m_scene.m_cameras.cutTo(m_before.cameras);
    m_scene.m_cameraInstances.cutTo(m_before.cameraInstances);
    m_scene.m_lights.cutTo(m_before.lights);
    m_scene.m_identifiers->returnTo(m_identifiers);
}

void SceneAttempt::expectChild(const NodePtr& parent, const NodePtr& node)
{
    m_children.emplace_back(parent, node);
}

void SceneAttempt::removeChildren()
{
    for (auto child = m_children.rbegin(); child != m_children.rend(); ++child)
    {
        try
        {
            child->first->removeChild(child->second);
        }
        catch (...) // of a listener, or for want of memory for it: the child is removed
        {
        }
    }
}
} // namespace velmoran::scene
