#include "scene/physics/PhysicsRigidConstraint.h"

#include <utility>

namespace velmoran::scene
{
PhysicsRigidConstraint::PhysicsRigidConstraint(std::string sid, std::string name, bool enabled,
                                               bool interpenetrate)
    : m_sid(std::move(sid)),
      m_name(std::move(name)),
      m_enabled(enabled),
      m_interpenetrate(interpenetrate),
      m_linearTranslationMin(Vec3::Zero()),
      m_linearTranslationMax(Vec3::Zero()),
      m_linearRotationMin(Vec3::Zero()),
      m_linearRotationMax(Vec3::Zero())
{
}

PhysicsRigidConstraint::~PhysicsRigidConstraint() = default;

// By value: callers may pass this constraint's own limits, e.g. to swap two of them.
void PhysicsRigidConstraint::setLinearlimits(Vec3 translationMin, Vec3 translationMax,
                                             Vec3 rotationMin, Vec3 rotationMax)
{
    m_linearTranslationMin = translationMin;
    m_linearTranslationMax = translationMax;
    m_linearRotationMin = rotationMin;
    m_linearRotationMax = rotationMax;
}
} // namespace velmoran::scene
