#include "scene/physics/PhysicsShape.h"

namespace velmoran::scene
{
PhysicsShape::PhysicsShape()
    : m_hollow(false),
      m_mass(-1.0f),
      m_density(-1.0f),
      m_rotation(1.0f, Eigen::Vector3f::Zero()),
      m_translation(Eigen::Translation<float, 3>::Identity())
{
}

PhysicsShape::~PhysicsShape() = default;
} // namespace velmoran::scene
