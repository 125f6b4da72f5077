#include "scene/physics/PhysicsScene.h"

#include <utility>

namespace velmoran::scene
{
PhysicsScene::PhysicsScene(std::string id, std::string name)
    : m_id(std::move(id)),
      m_name(std::move(name)),
      m_gravity(0.0f, 0.0f, -9.81f),
      m_timeStep(1.0f / 60.0f)
{
}

PhysicsScene::~PhysicsScene() = default;
} // namespace velmoran::scene
