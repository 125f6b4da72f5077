#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Core>
#include <boost/weak_ptr.hpp>

#include <string>

namespace velmoran::scene
{
/// A light source; nodes place it in the scene.
///
/// Starts white, without attenuation over distance and without fall-off.
/// Ownership: held by the light library of its scene and by the nodes that place it.
///     It remembers the scene weakly and raises nothing once that is gone.
/// Events: "LightUpdated" with the light's ID after each change but the type's.
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT Light
{
public:
    /// The kind of light.
    using LightType = int;
    static constexpr LightType AMBIENT = 0;     ///< from everywhere
    static constexpr LightType DIRECTIONAL = 1; ///< from far away
    static constexpr LightType POINT = 2;       ///< to all sides
    static constexpr LightType SPOT = 3;        ///< a cone

    /// A light of `scene`, which may be empty. Any type is stored as it is.
    Light(const ISceneContextPtr& scene, LightType type, std::string id, std::string name);

    virtual ~Light();

    const std::string& getID() const;
    const std::string& getName() const;

    LightType getLightType() const;

    /// Sets the type only and raises nothing.
    void setLightType(LightType type);

    /// Red, green and blue.
    Eigen::Vector3f getColor() const;

    /// The factors of 1, distance and distance squared in the attenuation's divisor.
    float getConstantAttenuation() const;
    float getLinearAttenuation() const;
    float getQuadraticAttenuation() const;

    /// The whole angle of a spot light's cone in degrees, and the exponent by which
    /// the light fades towards its border.
    float getFallOffAngle() const;
    float getFallOffExponent() const;

    /// @name Setters
    /// Each stores all its values as they are and then raises "LightUpdated" once.
    /// @{

    void setColor(const Eigen::Vector3f& color);
    void setColor(float red, float green, float blue);
    void setAttenuation(float constant, float linear, float quadratic);
    void setFallOff(float angle, float exponent);

    /// @}

    /// Raises "LightUpdated".
    void triggerUpdateEvent();

private:
    boost::weak_ptr<ISceneContext> m_sceneManager;
    std::string m_id;
    std::string m_name;
    LightType m_lightType;
    Eigen::Vector3f m_color = Eigen::Vector3f::Ones();
    float m_constantAttenuation = 1.0F;
    float m_linearAttenuation = 0.0F;
    float m_quadraticAttenuation = 0.0F;
    float m_fallOffAngle = 180.0F; ///< degrees
    float m_fallOffExponent = 0.0F;
};
} // namespace velmoran::scene
