#include "scene/graph/Light.h"

#include "scene/EventTypes.h"
#include "scene/graph/RaiseIfHeard.h"

#include <utility>

namespace velmoran::scene
{
Light::Light(const ISceneContextPtr& scene, LightType type, std::string id, std::string name)
    : m_sceneManager(scene), m_id(std::move(id)), m_name(std::move(name)), m_lightType(type)
{
}

Light::~Light() = default;

const std::string& Light::getID() const
{
    return m_id;
}

const std::string& Light::getName() const
{
    return m_name;
}

Light::LightType Light::getLightType() const
{
    return m_lightType;
}

void Light::setLightType(LightType type)
{
    m_lightType = type;
}

Eigen::Vector3f Light::getColor() const
{
    return m_color;
}

float Light::getConstantAttenuation() const
{
    return m_constantAttenuation;
}

float Light::getLinearAttenuation() const
{
    return m_linearAttenuation;
}

float Light::getQuadraticAttenuation() const
{
    return m_quadraticAttenuation;
}

float Light::getFallOffAngle() const
{
    return m_fallOffAngle;
}

float Light::getFallOffExponent() const
{
    return m_fallOffExponent;
}

void Light::setColor(const Eigen::Vector3f& color)
{
    m_color = color;
    triggerUpdateEvent();
}

void Light::setColor(float red, float green, float blue)
{
    setColor(Eigen::Vector3f(red, green, blue));
}

void Light::setAttenuation(float constant, float linear, float quadratic)
{
    m_constantAttenuation = constant;
    m_linearAttenuation = linear;
    m_quadraticAttenuation = quadratic;
    triggerUpdateEvent();
}

void Light::setFallOff(float angle, float exponent)
{
    m_fallOffAngle = angle;
    m_fallOffExponent = exponent;
    triggerUpdateEvent();
}

void Light::triggerUpdateEvent()
{
    raiseIfHeard(m_sceneManager, events::lightUpdated(), m_id);
}
} // namespace velmoran::scene
