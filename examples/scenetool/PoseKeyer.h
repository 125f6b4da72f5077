#pragma once

#include "examples/scenetool/PoseKeeper.h"
#include "examples/scenetool/Poses.h"

#include <Eigen/Core>

#include <string>
#include <vector>

namespace velmoran::examples
{
/// A turn of one node, in its own frame.
struct KeyTurn
{
    std::string nodeID;
    Eigen::Vector3f axis = Eigen::Vector3f::UnitX(); ///< of unit length
    float degrees = 0.0F;
};

/// A pose to be keyed: that of the document at this time, with some nodes turned.
struct KeyPose
{
    double time = 0.0; ///< seconds
    std::vector<KeyTurn> turns;
};

/// Keys poses of a scene into an animation of their own.
///
/// Takes the scene's animation manager away from the scene's worker. Nobody else may read
/// or change the scene meanwhile.
class PoseKeyer
{
public:
    /// Throws `CommandError` when `scene`, read from `fileName`, lacks a node.
    PoseKeyer(const scene::SceneManagerPtr& scene, const std::vector<KeyPose>& poses,
              const std::string& fileName);

    /// Keys all poses, which adds the animation to the scene's library. Throws
    /// `CommandError` when a node that is turned can't be keyed.
    void key();

    /// Puts the scene to the times of all keys. Answers the largest difference between an
    /// element of a node's matrix then and of the one that was keyed.
    float playBack() const;

    /// Puts the scene into the pose that was keyed last.
    void applyLast() const;

    const scene::AnimationPtr& getAnimation() const;

    /// The turned nodes in each pose, as they were keyed.
    const std::vector<PoseSample>& getSamples() const;

private:
    void collectDocumentPoses();
    scene::AnimationManagerPtr installAnimation();
    void turnNodes(const KeyPose& pose);
    void checkKeyed() const;

    const scene::SceneManagerPtr m_scene;
    const std::vector<KeyPose> m_poses;
    const scene::AnimationPtr m_animation;
    std::vector<std::vector<scene::NodePtr>> m_turned; ///< by pose
    std::vector<PoseKeeper> m_kept;    ///< by pose: the document's, then the keyed one
    std::vector<PoseSample> m_samples; ///< by pose
};
} // namespace velmoran::examples
