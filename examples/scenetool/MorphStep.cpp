#include "examples/scenetool/MorphStep.h"

#include "core/event/EventBase.h"
#include "examples/scenetool/Poses.h"
#include "examples/scenetool/Skinning.h"
#include "examples/scenetool/Text.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"

#include <optional>

namespace velmoran::examples
{
namespace
{
/// Hears what a scene wants the user to read.
class MessageListener : public core::event::EventBase
{
public:
    explicit MessageListener(const core::event::EventManagerPtr& eventManager)
        : EventBase(eventManager)
    {
        EventBase::registerToListen(std::string("DisplayMessageAt"));
    }

    ~MessageListener() override { EventBase::setEventManager({}); }

    MessageListener(const MessageListener&) = delete;
    MessageListener& operator=(const MessageListener&) = delete;

    /// The place on the screen, which follows the message, does not matter here.
    void handleEvent(core::event::Event event) override
    {
        m_message = event.getEventData().getArg(0);
    }

    const std::string& getMessage() const { return m_message; }

private:
    std::string m_message; ///< the last one
};

std::optional<SkinInstance> findAvatarSkin(const scene::SceneManagerPtr& scene)
{
    const scene::NodePtr node = scene->getNodeByID("human-template");
    const scene::InstanceControllerPtr instance =
        node ? node->getInstanceController(0) : scene::InstanceControllerPtr();
    return instance ? findSkin(node, instance) : std::nullopt;
}

std::vector<scene::NodePtr> getJoints(const scene::SceneManagerPtr& scene)
{
    std::vector<scene::NodePtr> joints;
    std::vector<int> parents;
    scene::SceneManager::transverseSceneForJoints(scene->getRoot(), joints, parents);
    return joints;
}

/// "" when all joints have a namesake.
std::string describeStrangers(const LoadedScene& avatar, const LoadedScene& target)
{
    const std::vector<scene::NodePtr> joints = getJoints(avatar.scene);
    std::vector<std::string> strangers;
    for (const scene::NodePtr& joint : joints)
    {
        const scene::NodePtr namesake = target.scene->getNodeByID(joint->getID());
        if (!namesake || namesake->getType() != "JOINT")
        {
            strangers.push_back(joint->getID());
        }
    }
    if (strangers.empty())
    {
        return "";
    }
    const std::string& first = strangers.front();
    return std::to_string(strangers.size()) + " of " + countText(joints.size(), "joint", "joints") +
           " of " + avatar.fileName + " are not in " + target.fileName + " (" + quoted(first) +
           (strangers.size() > 1 ? ", ..." : "") + ")";
}
} // namespace

AvatarPose takeAvatarPose(const scene::SceneManagerPtr& scene)
{
    AvatarPose pose;
    if (const std::optional<SkinInstance> skin = findAvatarSkin(scene))
    {
        pose.vertices = getPoints(*skinPositions(scene, *skin));
    }
    for (const Eigen::Matrix4f& world : samplePose(scene, getJoints(scene), 0.0).worlds)
    {
        pose.joints.emplace_back(world.col(3).head<3>().cast<double>());
    }
    return pose;
}

void morphAvatar(const scene::SceneManagerPtr& avatar, const scene::SceneManagerPtr& target,
                 double ratio)
{
    const MessageListener listener(avatar->getEventManager());
    {
        const scene::SceneLock lock(avatar);
        const scene::SceneLock targetLock(target);
        avatar->morph(target, static_cast<float>(ratio));
    }
    if (!listener.getMessage().empty())
    {
        throw CommandError(onOneLine(listener.getMessage()));
    }
}

std::vector<std::string> findMismatches(const LoadedScene& avatar, const LoadedScene& target)
{
    std::vector<std::string> mismatches;
    const std::size_t own = takeAvatarPose(avatar.scene).vertices.size();
    const std::size_t others = takeAvatarPose(target.scene).vertices.size();
    if (own != others)
    {
        mismatches.push_back(avatar.fileName + " has " + std::to_string(own) + " vertices, " +
                             target.fileName + ' ' + std::to_string(others) +
                             "; the vertices are not blended");
    }
    const std::string strangers = describeStrangers(avatar, target);
    const std::size_t controllers = avatar.scene->getControllersLibrary().size();
    if (!strangers.empty())
    {
        mismatches.push_back(strangers + "; the joints stay where they are");
    }
    else if (controllers != 1)
    {
        mismatches.push_back(avatar.fileName + " holds " + std::to_string(controllers) +
                             " controllers, and joints can be moved with one only; they stay "
                             "where they are");
    }
    return mismatches;
}
} // namespace velmoran::examples
