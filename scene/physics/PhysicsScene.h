#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#include <string>
#include <vector>

namespace velmoran::scene
{
/// Physics models that act together, under one gravity and one time step.
///
/// Ownership: shares the instances of its models.
/// Threads: plain data, used by one thread at a time. Setters raise nothing.
class VELMORAN_SCENE_EXPORT PhysicsScene
{
public:
    /// A scene without models.
    PhysicsScene(std::string id, std::string name);
    virtual ~PhysicsScene();

    const std::string& getID() const { return m_id; }
    void setId(const std::string& id) { m_id = id; }

    const std::string& getName() const { return m_name; }
    void setName(const std::string& name) { m_name = name; }

    /// Acceleration in metres per second squared; (0, 0, -9.81) at the start, for
    /// scenes whose up axis is z.
    const Eigen::Matrix<float, 3, 1>& getGravity() const { return m_gravity; }
    void setGravity(const Eigen::Matrix<float, 3, 1>& gravity) { m_gravity = gravity; }

    /// Step of a simulation in seconds; 1/60 at the start.
    float getTimeStep() const { return m_timeStep; }
    void setTimeStep(float timeStep) { m_timeStep = timeStep; }

    const std::vector<PhysicsInstanceModelPtr>& getInstancedModels() const { return m_models; }
    void setInstancedModels(const std::vector<PhysicsInstanceModelPtr>& models)
    {
        m_models = models;
    }

private:
    std::string m_id;
    std::string m_name;
    Eigen::Matrix<float, 3, 1> m_gravity;
    float m_timeStep;
    std::vector<PhysicsInstanceModelPtr> m_models;
};
} // namespace velmoran::scene
