#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

namespace velmoran::scene
{
/// A rigid body of a model, put to work on a node.
///
/// Ownership: shares both; either may be empty.
/// Threads: never changes, so any thread may read it.
class VELMORAN_SCENE_EXPORT PhysicsInstanceRigidBody
{
public:
    /// An instance of `body` that drives `target`.
    PhysicsInstanceRigidBody(PhysicsRigidBodyPtr body, NodePtr target);
    virtual ~PhysicsInstanceRigidBody();

    const PhysicsRigidBodyPtr& getBody() const { return m_body; }

    /// The node that the body drives.
    const NodePtr& getTarget() const { return m_target; }

private:
    PhysicsRigidBodyPtr m_body;
    NodePtr m_target;
};
} // namespace velmoran::scene
