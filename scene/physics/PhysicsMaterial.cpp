#include "scene/physics/PhysicsMaterial.h"

#include <utility>

namespace velmoran::scene
{
PhysicsMaterial::PhysicsMaterial(std::string id, std::string name, float restitution,
                                 float staticFriction, float dynamicFriction)
    : m_id(std::move(id)),
      m_name(std::move(name)),
      m_restitution(restitution),
      m_staticFriction(staticFriction),
      m_dynamicFriction(dynamicFriction)
{
}

PhysicsMaterial::~PhysicsMaterial() = default;
} // namespace velmoran::scene
