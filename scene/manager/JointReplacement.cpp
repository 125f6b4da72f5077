#include "scene/manager/JointReplacement.h"

#include "scene/deform/Controller.h"
#include "scene/deform/JointFrames.h"
#include "scene/deform/Skin.h"
#include "scene/deform/SkinBinding.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <unordered_map>

namespace velmoran::scene
{
namespace
{
/// The tuples that are positions: the first three floats, when these are finite.
std::vector<Eigen::Vector3f> positionsIn(const StreamPtr& stream)
{
    std::vector<Eigen::Vector3f> positions;
    if (!stream || stream->getStride() < 3)
    {
        return positions;
    }
    const std::vector<float>& data = stream->getData();
    const auto stride = static_cast<std::size_t>(stream->getStride());
    for (std::size_t i = 0; i < data.size() / stride; ++i)
    {
        const Eigen::Vector3f position = Eigen::Map<const Eigen::Vector3f>(&data[i * stride]);
        if (position.allFinite())
        {
            positions.push_back(position);
        }
    }
    return positions;
}
} // namespace

JointReplacement::JointReplacement(const NodePtr& root,
                                   const std::vector<ControllerPtr>& controllers)
    : m_controllers(controllers)
{
    std::vector<int> parents;
    SceneManager::transverseSceneForJoints(root, m_joints, parents);
}

std::string JointReplacement::read(const SceneManager& joints)
{
    std::vector<IGeometryPtr> geometries;
    joints.getGeometryManager()->getGeometries(geometries);
    if (geometries.size() != 1)
    {
        return "Invalid joints scene. Found more than one geometry.";
    }
    const auto mesh = boost::dynamic_pointer_cast<Mesh>(geometries.front());
    if (!mesh || mesh->getVertices().size() != 1)
    {
        return "Invalid joints scene. Found more than one vertices stream mapping.";
    }
    m_positions = positionsIn(mesh->getVertices().front().getStream());
    if (m_positions.size() != m_joints.size())
    {
        return "Invalid joints scene. Found different number of joints.";
    }
    return findSkin();
}

std::string JointReplacement::findSkin()
{
    if (m_controllers.size() != 1)
    {
        return "Invalid scene. Scene must have one and only one controller.";
    }
    m_skin = m_controllers.front()->getSkin();
    return m_skin ? ""
                  : "Invalid scene. Scene must have one and only one controller with a valid skin.";
}

void JointReplacement::apply(const NodePtr& last, bool turnsLast)
{
    const std::vector<JointFrame> frames =
        placeJoints(m_joints, m_positions, turnsLast ? NodePtr() : last);
    std::unordered_map<std::string, Eigen::Vector3f> lostScales;
    for (std::size_t i = 0; i < m_joints.size(); ++i)
    {
        lostScales.try_emplace(m_joints[i]->getID(), frames[i].lostScale);
    }

    const auto place = [&](bool isLast)
    {
        for (std::size_t i = 0; i < m_joints.size(); ++i)
        {
            if ((m_joints[i] == last) == isLast)
            {
                m_joints[i]->setTransformations(frames[i].local);
            }
        }
    };
    // What a joint carries keeps its place in the joint's frame, so the inverse bind matrices
    // B, which take it there, change only where a node's scale changes. With W' in place
    // of W, N * (sum of weight * W' * B) * bind shape * p is the reshaped mesh.
    const auto [current, scaled] = scaleInJointFrames(*m_skin, lostScales);
    place(false);
    m_skin->replaceStream(current, scaled);
    place(true);
}
} // namespace velmoran::scene
