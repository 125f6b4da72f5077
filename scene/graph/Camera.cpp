#include "scene/graph/Camera.h"

#include "scene/EventTypes.h"
#include "scene/graph/RaiseIfHeard.h"

#include <utility>

namespace velmoran::scene
{
Camera::Camera(const ISceneContextPtr& scene, Type type, std::string id, std::string name)
    : m_sceneManager(scene), m_id(std::move(id)), m_name(std::move(name)), m_cameraType(type)
{
    if (type != PERSPECTIVE && type != ORTHOGRAPHIC)
    {
        return;
    }
    m_yFov = type == PERSPECTIVE ? 45.0F : 1.0F;
    m_zNear = 0.1F;
    m_zFar = 10000.0F;
}

Camera::~Camera() = default;

const std::string& Camera::getID() const
{
    return m_id;
}

const std::string& Camera::getName() const
{
    return m_name;
}

Camera::Type Camera::getCameraType() const
{
    return m_cameraType;
}

void Camera::setCameraType(Type type)
{
    m_cameraType = type;
}

float Camera::getYFov() const
{
    return m_yFov;
}

float Camera::getZNear() const
{
    return m_zNear;
}

float Camera::getZFar() const
{
    return m_zFar;
}

void Camera::setYFov(float yFov)
{
    m_yFov = yFov;
    triggerUpdateEvent();
}

void Camera::setZNear(float zNear)
{
    m_zNear = zNear;
    triggerUpdateEvent();
}

void Camera::setZFar(float zFar)
{
    m_zFar = zFar;
    triggerUpdateEvent();
}

void Camera::triggerUpdateEvent()
{
    raiseIfHeard(m_sceneManager, events::cameraUpdated(), m_id);
}
} // namespace velmoran::scene
