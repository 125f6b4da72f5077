#include "scene/physics/PhysicsInstanceModel.h"

#include <utility>

namespace velmoran::scene
{
PhysicsInstanceModel::PhysicsInstanceModel(PhysicsModelPtr model, NodePtr node)
    : m_physicsModel(std::move(model)), m_node(std::move(node))
{
}

PhysicsInstanceModel::~PhysicsInstanceModel() = default;
} // namespace velmoran::scene
