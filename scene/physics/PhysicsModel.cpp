#include "scene/physics/PhysicsModel.h"

#include "scene/physics/PhysicsRigidBody.h"
#include "scene/physics/PhysicsRigidConstraint.h"

#include <utility>

namespace velmoran::scene
{
PhysicsModel::PhysicsModel(std::string id, std::string name)
    : m_id(std::move(id)), m_name(std::move(name))
{
}

PhysicsModel::~PhysicsModel() = default;

PhysicsRigidBodyPtr PhysicsModel::getRigidBodyById(const std::string& id) const
{
    for (const PhysicsRigidBodyPtr& body : m_bodies)
    {
        if (body && body->getID() == id)
        {
            return body;
        }
    }
    return PhysicsRigidBodyPtr();
}

PhysicsRigidConstraintPtr PhysicsModel::getRigidConstraintById(const std::string& sid) const
{
    for (const PhysicsRigidConstraintPtr& constraint : m_constraints)
    {
        if (constraint && constraint->getSid() == sid)
        {
            return constraint;
        }
    }
    return PhysicsRigidConstraintPtr();
}
} // namespace velmoran::scene
