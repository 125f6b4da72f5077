#include "examples/scenetool/PoseKeeper.h"

#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <algorithm>

namespace velmoran::examples
{
PoseKeeper::PoseKeeper(const scene::SceneManagerPtr& scene)
{
    for (const scene::NodePtr& node : scene->getNodeArray())
    {
        m_entries.push_back({node, node->getTranslation(), node->getRotation().matrix(),
                             node->getScale(), node->getTransformations()});
    }
}

void PoseKeeper::apply() const
{
    for (const Entry& entry : m_entries)
    {
        entry.node->setTransformations(entry.translation, entry.rotation);
        entry.node->setScale(entry.scale);
    }
}

float PoseKeeper::getDistance(const PoseKeeper& other) const
{
    float largest = 0.0F;
    for (std::size_t i = 0; i < m_entries.size(); ++i)
    {
        const Eigen::Matrix4f difference = m_entries[i].local - other.m_entries[i].local;
        largest = std::max(largest, difference.cwiseAbs().maxCoeff());
    }
    return largest;
}
} // namespace velmoran::examples
