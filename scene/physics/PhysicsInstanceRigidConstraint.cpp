#include "scene/physics/PhysicsInstanceRigidConstraint.h"

#include <utility>

namespace velmoran::scene
{
PhysicsInstanceRigidConstraint::PhysicsInstanceRigidConstraint(PhysicsRigidConstraintPtr constraint,
                                                               std::string sid, std::string name)
    : m_constraint(std::move(constraint)), m_sid(std::move(sid)), m_name(std::move(name))
{
}

PhysicsInstanceRigidConstraint::~PhysicsInstanceRigidConstraint() = default;
} // namespace velmoran::scene
