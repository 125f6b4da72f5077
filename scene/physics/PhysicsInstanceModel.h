#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <vector>

namespace velmoran::scene
{
/// A physics model, put to work under a node.
///
/// Ownership: shares the model, the node and the instances; handles may be empty.
/// Threads: plain data, used by one thread at a time. Setters raise nothing.
class VELMORAN_SCENE_EXPORT PhysicsInstanceModel
{
public:
    /// An instance of `model` at `node`, without bodies and constraints.
    PhysicsInstanceModel(PhysicsModelPtr model, NodePtr node);
    virtual ~PhysicsInstanceModel();

    const PhysicsModelPtr& getPhysicsModel() const { return m_physicsModel; }

    /// The node whose frame the model is placed in.
    const NodePtr& getNode() const { return m_node; }

    const std::vector<PhysicsInstanceRigidBodyPtr>& getInstancedRigidBodies() const
    {
        return m_bodies;
    }
    void setInstancedRigidBodies(const std::vector<PhysicsInstanceRigidBodyPtr>& bodies)
    {
        m_bodies = bodies;
    }

    const std::vector<PhysicsInstanceRigidConstraintPtr>& getInstancedRigidConstraint() const
    {
        return m_constraints;
    }
    void
    setInstancedRigidConstraints(const std::vector<PhysicsInstanceRigidConstraintPtr>& constraints)
    {
        m_constraints = constraints;
    }

private:
    PhysicsModelPtr m_physicsModel;
    NodePtr m_node;
    std::vector<PhysicsInstanceRigidBodyPtr> m_bodies;
    std::vector<PhysicsInstanceRigidConstraintPtr> m_constraints;
};
} // namespace velmoran::scene
