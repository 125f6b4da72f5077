#include "scene/graph/PoseWriter.h"

#include "core/event/EventManager.h"
#include "scene/EventTypes.h"

namespace velmoran::scene
{
PoseWriter::PoseWriter(const ISceneContextPtr& scene) : m_scene(scene), m_silent(true)
{
    const core::event::EventManagerPtr manager =
        scene ? scene->getEventManager() : core::event::EventManagerPtr();
    m_silent = !manager || (!manager->hasListeners(events::nodeTransformationUpdate()) &&
                            !manager->hasListeners(events::sceneUpdate()));
}

void PoseWriter::write(Node& node, const Eigen::Matrix4f& matrix,
                       const Eigen::Vector3f& scale) const
{
    if (isSilentFor(node))
    {
        node.assignTransformations(matrix);
        node.m_scale = scale;
        node.updateLocalMatrix();
    }
    else
    {
        node.setTransformations(matrix);
        node.setScale(scale);
    }
}

bool PoseWriter::belongsToScene(const Node& node) const
{
    return !node.m_sceneManager.owner_before(m_scene) && !m_scene.owner_before(node.m_sceneManager);
}
} // namespace velmoran::scene
