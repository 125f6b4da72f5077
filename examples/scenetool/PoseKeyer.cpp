#include "examples/scenetool/PoseKeyer.h"

#include "examples/scenetool/Channels.h"
#include "examples/scenetool/SceneLoader.h"
#include "examples/scenetool/ScenePlayer.h"
#include "examples/scenetool/Text.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Geometry>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace velmoran::examples
{
namespace
{
ScenePlayer::Time toTime(double seconds)
{
    return boost::posix_time::microseconds(std::llround(seconds * 1e6));
}

/// Each ID once, in order.
std::vector<std::string> turnedIDs(const KeyPose& pose)
{
    std::vector<std::string> ids;
    for (const KeyTurn& turn : pose.turns)
    {
        if (std::find(ids.begin(), ids.end(), turn.nodeID) == ids.end())
        {
            ids.push_back(turn.nodeID);
        }
    }
    return ids;
}
} // namespace

PoseKeyer::PoseKeyer(const scene::SceneManagerPtr& scene, const std::vector<KeyPose>& poses,
                     const std::string& fileName)
    : m_scene(scene), m_poses(poses), m_animation(boost::make_shared<scene::Animation>("keyed", ""))
{
    for (const KeyPose& pose : poses)
    {
        m_turned.push_back(findNodes(scene, turnedIDs(pose), fileName));
    }
}

void PoseKeyer::key()
{
    collectDocumentPoses();
    const scene::AnimationManagerPtr manager = installAnimation();
    for (std::size_t i = 0; i < m_poses.size(); ++i)
    {
        m_kept[i].apply();
        turnNodes(m_poses[i]);
        manager->insertKeyframe(static_cast<float>(m_poses[i].time));
        m_kept[i] = PoseKeeper(m_scene);
        m_samples.push_back(samplePose(m_scene, m_turned[i], m_poses[i].time));
    }
    checkKeyed();
}

float PoseKeyer::playBack() const
{
    ScenePlayer player(m_scene, m_animation);
    float largest = 0.0F;
    for (std::size_t i = 0; i < m_poses.size(); ++i)
    {
        player.show(toTime(m_poses[i].time));
        largest = std::max(largest, m_kept[i].getDistance(PoseKeeper(m_scene)));
    }
    return largest;
}

void PoseKeyer::applyLast() const
{
    m_kept.back().apply();
}

const scene::AnimationPtr& PoseKeyer::getAnimation() const
{
    return m_animation;
}

const std::vector<PoseSample>& PoseKeyer::getSamples() const
{
    return m_samples;
}

/// The poses of the document's own animations, if any. All before the first key: keying
/// replaces the transformations that these animations move.
void PoseKeyer::collectDocumentPoses()
{
    const PoseKeeper rest(m_scene);
    const scene::AnimationPtr animation = joinAnimations(*m_scene);
    for (const KeyPose& pose : m_poses)
    {
        rest.apply();
        if (animation)
        {
            ScenePlayer(m_scene, animation).show(toTime(pose.time));
        }
        m_kept.emplace_back(m_scene);
    }
}

/// Makes the animation the current one of a new manager, which is not driven yet.
scene::AnimationManagerPtr PoseKeyer::installAnimation()
{
    std::vector<scene::AnimationPtr> library = m_scene->getAnimationsLibrary();
    library.push_back(m_animation);
    m_scene->setAnimationsLibrary(library);
    const scene::AnimationManagerPtr manager = m_scene->getAnimationManager();
    m_scene->removeSceneController(manager);
    manager->setAnimation(m_animation);
    return manager;
}

void PoseKeyer::turnNodes(const KeyPose& pose)
{
    constexpr float RADIANS_PER_DEGREE = 0.017453292F;
    for (const KeyTurn& turn : pose.turns)
    {
        const Eigen::AngleAxisf rotation(turn.degrees * RADIANS_PER_DEGREE, turn.axis);
        m_scene->getNodeByID(turn.nodeID)->rotate(rotation.toRotationMatrix());
    }
}

/// The root of the scene and the node of its first camera never are.
void PoseKeyer::checkKeyed() const
{
    const std::vector<scene::NodePtr> keyed = getAnimatedNodes(*m_scene, m_animation);
    for (const std::vector<scene::NodePtr>& turned : m_turned)
    {
        for (const scene::NodePtr& node : turned)
        {
            if (std::find(keyed.begin(), keyed.end(), node) == keyed.end())
            {
                throw CommandError("node " + quoted(node->getID()) +
                                   " can't be keyed: it is the root of the scene or has its "
                                   "first camera");
            }
        }
    }
}
} // namespace velmoran::examples
