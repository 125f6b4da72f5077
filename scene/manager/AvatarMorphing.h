#pragma once

#include "scene/Forward.h"

#include <Eigen/Core>

#include <string>
#include <vector>

namespace velmoran::scene
{
/// The avatar of a scene, by its fixed identifiers.
struct Avatar
{
    SceneManagerPtr scene;
    NodePtr node; ///< "human-template", which carries the controller instance
    SkinPtr skin;
    MeshPtr mesh; ///< "human-template-lib"
};

/// One morph of a scene's avatar toward another one, step by step.
class AvatarMorphing
{
public:
    AvatarMorphing(const SceneManagerPtr& scene, const SceneManagerPtr& target);

    /// Sets the "sacrum" of both scenes to the identity.
    void resetPoses() const;

    /// Finds both avatars. Answers what is missing; "" when nothing is.
    std::string findAvatars();

    /// Poses and blends the vertices of both into the scene's avatar: own * ratio + target's *
    /// (1 - ratio). False, and nothing changes, when they do not match.
    bool blendVertices(float ratio);

    /// A scene with one mesh, whose vertices are the blended world positions of those joints
    /// of the scene that the target has too.
    SceneManagerPtr blendJoints(float ratio) const;

    /// Binds the scene's avatar to its present pose.
    void bind() const;

private:
    static StreamPtr verticesOf(const Avatar& avatar);
    static StreamPtr poseOf(const Avatar& avatar);
    StreamPtr ownVertices();

    Avatar m_own;
    Avatar m_target;
};
} // namespace velmoran::scene
