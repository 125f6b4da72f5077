#pragma once

#include "scene/Export.h"

#include <string>

namespace velmoran::scene
{
/// How a body bounces and slides. Coefficients are kept as given, not checked.
///
/// Threads: plain data, used by one thread at a time. Setters raise nothing.
class VELMORAN_SCENE_EXPORT PhysicsMaterial
{
public:
    /// Mind the order: restitution comes before the two friction coefficients.
    PhysicsMaterial(std::string id, std::string name, float restitution, float staticFriction,
                    float dynamicFriction);
    virtual ~PhysicsMaterial();

    const std::string& getID() const { return m_id; }

    const std::string& getName() const { return m_name; }
    void setName(const std::string& name) { m_name = name; }

    float getRestitution() const { return m_restitution; }
    void setRestitution(float restitution) { m_restitution = restitution; }

    float getStaticFriction() const { return m_staticFriction; }
    void setStaticFriction(float staticFriction) { m_staticFriction = staticFriction; }

    float getDynamicFriction() const { return m_dynamicFriction; }
    void setDynamicFriction(float dynamicFriction) { m_dynamicFriction = dynamicFriction; }

private:
    std::string m_id;
    std::string m_name;
    float m_restitution;
    float m_staticFriction;
    float m_dynamicFriction;
};
} // namespace velmoran::scene
