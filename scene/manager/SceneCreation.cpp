// Cameras and lights made on request and placed in the node tree.

#include "core/event/EventManager.h"
#include "core/utils/AllOrNothing.h"
#include "scene/EventTypes.h"
#include "scene/graph/Camera.h"
#include "scene/graph/CameraInstance.h"
#include "scene/graph/Light.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneAttempt.h"

#include <boost/make_shared.hpp>

namespace velmoran::scene
{
namespace
{
/// The turn that makes a camera look along the ground of a scene with this up axis.
/// Cosine and length as the single-precision rotation by a right angle has them.
void turnForUpAxis(Node& node, UpAxis axis)
{
    const float c = -4.371139e-08F;
    const float d = 0.99999994F;
    Eigen::Matrix3f rotation;
    switch (axis)
    {
    case X_UP:
        rotation << c, 1.0F, 0.0F, -1.0F, c, 0.0F, 0.0F, 0.0F, d;
        node.rotate(rotation);
        break;
    case Z_UP:
        rotation << d, 0.0F, 0.0F, 0.0F, c, -1.0F, 0.0F, 1.0F, c;
        node.rotate(rotation);
        break;
    case Y_UP:
        break;
    }
}
} // namespace

std::string SceneManager::createNewCamera(int type, const std::string& nodeID,
                                          const std::string& parentID)
{
    const boost::shared_ptr<SceneManager> self = shared_from_this();
    SceneAttempt attempt(*this);
    std::string cameraID = generateID();
    const CameraPtr camera = boost::make_shared<Camera>(self, type, cameraID, "VMCamera");
    m_cameras.add(camera);

    NodePtr node = getNodeByID(nodeID);
    const bool isNew = !node;
    if (isNew)
    {
        node = boost::make_shared<Node>(self);
        node->setID(nodeID.empty() ? generateID() : nodeID);
    }
    const CameraInstancePtr instance =
        boost::make_shared<CameraInstance>(node, camera, generateID());
    if (isNew)
    {
        placeNode(node, parentID, attempt);
    }
    addCameraInstance(instance);
    node->addInstanceCamera(camera);
    attempt.keep();
    turnForUpAxis(*node, m_upAxis);
    raise(events::sceneNewCamera(), instance->getSID());
    return cameraID;
}

void SceneManager::createNewLight(int type, std::string lightID, const std::string& nodeID,
                                  const std::string& parentID)
{
    const boost::shared_ptr<SceneManager> self = shared_from_this();
    SceneAttempt attempt(*this);
    const LightPtr light = boost::make_shared<Light>(self, type, lightID, "");
    if (!addLight(light))
    {
        m_logger << "[WARN] Could not add new light " + lightID;
    }
    NodePtr node = getNodeByID(nodeID);
    if (!node)
    {
        node = boost::make_shared<Node>(self);
        placeNode(node, parentID, attempt);
    }
    // Back in place, the name before needs no memory.
    core::utils::UndoUnlessKept undo([&node, before = node->getName()] { node->setName(before); });
    node->setName(lightID);
    node->addInstanceLight(light);
    undo.keep();
    attempt.keep();
}

void SceneManager::placeNode(const NodePtr& node, const std::string& parentID,
                             SceneAttempt& attempt)
{
    NodePtr parent = getNodeByID(parentID);
    if (!parent)
    {
        parent = getRoot();
    }
    attempt.expectChild(parent, node);
    parent->addNode(node);
}
} // namespace velmoran::scene
