#include "scene/physics/PhysicsAttachment.h"

#include <utility>

namespace velmoran::scene
{
PhysicsAttachment::PhysicsAttachment(PhysicsRigidBodyPtr body)
    : m_attachment(std::move(body)),
      m_rotation(Eigen::AngleAxis<float>::Identity()),
      m_translate(Eigen::Translation<float, 3>::Identity())
{
}

PhysicsAttachment::~PhysicsAttachment() = default;
} // namespace velmoran::scene
