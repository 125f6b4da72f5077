#include "scene/deform/InstanceController.h"

#include <utility>

namespace velmoran::scene
{
InstanceController::InstanceController(const InstanceGeometryPtr& instanceGeometry,
                                       const ControllerPtr& controller)
    : m_instanceGeometry(instanceGeometry), m_controller(controller)
{
}

InstanceController::~InstanceController() = default;

InstanceGeometryPtr InstanceController::getInstanceGeometry() const
{
    return m_instanceGeometry;
}

ControllerPtr InstanceController::getController() const
{
    return m_controller;
}

const std::vector<std::string>& InstanceController::getSkeletons() const
{
    return m_skeletons;
}

void InstanceController::setSkeletons(std::vector<std::string> skeletons)
{
    m_skeletons = std::move(skeletons);
}
} // namespace velmoran::scene
