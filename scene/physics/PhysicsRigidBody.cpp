#include "scene/physics/PhysicsRigidBody.h"

#include <utility>

namespace velmoran::scene
{
PhysicsRigidBody::PhysicsRigidBody(std::string id, std::string name, bool dynamic)
    : m_id(std::move(id)), m_name(std::move(name)), m_mass(0.0f), m_dynamic(dynamic)
{
}

PhysicsRigidBody::~PhysicsRigidBody() = default;

void PhysicsRigidBody::addShape(const PhysicsShapePtr& shape)
{
    if (shape)
    {
        m_shapes.push_back(shape);
    }
}
} // namespace velmoran::scene
