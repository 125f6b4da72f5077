#pragma once

#include "scene/Forward.h"
#include "scene/deform/Skin.h"
#include "scene/manager/StreamUsers.h"

#include <Eigen/Geometry>

#include <memory>
#include <string>
#include <utility>
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

/// One morph of a scene's avatar toward another one, step by step. Takes the steps back when
/// it ends before `keep`.
class AvatarMorphing
{
public:
    AvatarMorphing(const SceneManagerPtr& scene, const SceneManagerPtr& target);
    ~AvatarMorphing();

    AvatarMorphing(const AvatarMorphing&) = delete;
    AvatarMorphing& operator=(const AvatarMorphing&) = delete;

    /// Sets the "sacrum" of both scenes to the identity.
    void resetPoses();

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

    /// What was done stays.
    void keep() { m_isKept = true; }

private:
    /// A node's own transform.
    struct Pose
    {
        NodePtr node;
        Eigen::Translation3f translation;
        Eigen::Affine3f rotation;
        Eigen::Vector3f scale;
    };

    void rememberPose(const NodePtr& node);
    void rememberBinding(const SkinPtr& skin);
    void restorePoses();
    void restoreVertices();
    static StreamPtr verticesOf(const Avatar& avatar);
    static StreamPtr poseOf(const Avatar& avatar);
    StreamPtr ownVertices();

    Avatar m_own;
    Avatar m_target;

    // What was before.
    std::vector<Pose> m_poses;
    std::vector<std::pair<SkinPtr, Skin::Binding>> m_bindings;
    std::vector<float> m_floats;                ///< of m_vertices
    StreamPtr m_vertices;                       ///< empty until they are blended
    StreamPtr m_sharedVertices;                 ///< whose place m_vertices took; may be empty
    std::unique_ptr<const StreamUsers> m_users; ///< where it did
    bool m_isKept = false;
};
} // namespace velmoran::scene
