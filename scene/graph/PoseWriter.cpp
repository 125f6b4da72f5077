#include "scene/graph/PoseWriter.h"

#include "core/event/EventManager.h"
#include "scene/EventTypes.h"

namespace velmoran::scene
{
PoseWriter::PoseWriter(const ISceneContextPtr& scene) : m_silent(true)
{
    const core::event::EventManagerPtr manager =
        scene ? scene->getEventManager() : core::event::EventManagerPtr();
    m_silent = !manager || (!manager->hasListeners(events::nodeTransformationUpdate()) &&
                            !manager->hasListeners(events::sceneUpdate()));
}

bool PoseWriter::belongsTo(const ISceneContextPtr& scene, const Node& node)
{
    return !node.m_sceneManager.owner_before(scene) && !scene.owner_before(node.m_sceneManager);
}

void PoseWriter::write(Node& node, const Eigen::Matrix4f& matrix, const Eigen::Vector3f& scale)
{
    node.setTransformations(matrix);
    node.setScale(scale);
}

void PoseWriter::writeSilently(Node& node, const Eigen::Matrix4f& matrix,
                               const Eigen::Vector4f& scale)
{
    node.m_translation = matrix.topRightCorner<3, 1>();
    node.m_rotation.matrix().leftCols<3>() = matrix.leftCols<3>();
    node.m_rotation.matrix().col(3) = Eigen::Vector4f::UnitW();
    node.m_scale = scale.head<3>();
    node.m_transformations.col(0) = matrix.col(0) * scale[0];
    node.m_transformations.col(1) = matrix.col(1) * scale[1];
    node.m_transformations.col(2) = matrix.col(2) * scale[2];
    node.m_transformations.col(3) = matrix.col(3);
}
} // namespace velmoran::scene
