#pragma once

#include "scene/Forward.h"

#include <Eigen/Core>

#include <string>
#include <vector>

namespace velmoran::scene
{
/// One replacement of a scene's joints: first everything is read and checked, then changed.
class JointReplacement
{
public:
    /// Of the joints below `root` and of the only skin among `controllers`.
    JointReplacement(const NodePtr& root, const std::vector<ControllerPtr>& controllers);

    /// Reads the new positions from a joints scene. Answers what is wrong with either scene;
    /// "" when nothing is.
    std::string read(const SceneManager& joints);

    /// Moves the joints, after a `read` that found nothing wrong: `last` after the skin and all
    /// others. `last` is turned with its bone only if `turnsLast` is set. Raises the nodes'
    /// events.
    void apply(const NodePtr& last, bool turnsLast);

private:
    std::string findSkin();

    const std::vector<ControllerPtr> m_controllers;
    std::vector<NodePtr> m_joints;
    std::vector<Eigen::Vector3f> m_positions; ///< one for each joint
    SkinPtr m_skin;
};
} // namespace velmoran::scene
