#include "scene/physics/PhysicsInstanceRigidBody.h"

#include <utility>

namespace velmoran::scene
{
PhysicsInstanceRigidBody::PhysicsInstanceRigidBody(PhysicsRigidBodyPtr body, NodePtr target)
    : m_body(std::move(body)), m_target(std::move(target))
{
}

PhysicsInstanceRigidBody::~PhysicsInstanceRigidBody() = default;
} // namespace velmoran::scene
