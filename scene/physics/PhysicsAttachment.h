#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Geometry>

namespace velmoran::scene
{
/// Where a constraint holds a body: the body and the constraint's frame in it.
///
/// Ownership: shares the body, which may be empty.
/// Threads: plain data, used by one thread at a time. Setters raise nothing.
class VELMORAN_SCENE_EXPORT PhysicsAttachment
{
public:
    /// Attaches `body`; the frame starts as the body's own (the identity).
    explicit PhysicsAttachment(PhysicsRigidBodyPtr body);
    virtual ~PhysicsAttachment();

    /// The body; may be empty.
    const PhysicsRigidBodyPtr& getAttachment() const { return m_attachment; }
    void setAttachment(const PhysicsRigidBodyPtr& body) { m_attachment = body; }

    /// Turn of the constraint's frame in the body's; the angle in *radians*, as Eigen has it. Taken
    /// as it is, the axis not normalised; no rotation at the start.
    const Eigen::AngleAxis<float>& getRotation() const { return m_rotation; }
    void setRotation(const Eigen::AngleAxis<float>& rotation) { m_rotation = rotation; }

    /// Origin of the constraint's frame in the body's, in scene units; (0, 0, 0) at the start.
    const Eigen::Translation<float, 3>& getTranslate() const { return m_translate; }
    void setTranslate(const Eigen::Translation<float, 3>& translate) { m_translate = translate; }

private:
    PhysicsRigidBodyPtr m_attachment;
    Eigen::AngleAxis<float> m_rotation;
    Eigen::Translation<float, 3> m_translate;
};
} // namespace velmoran::scene
