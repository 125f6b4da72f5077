#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <string>
#include <vector>

namespace velmoran::scene
{
/// Bodies and the constraints between them, to be instanced in physics scenes.
///
/// Ownership: shares its bodies and constraints. The libraries are kept as given;
///     look-ups skip empty handles in them.
/// Threads: plain data, used by one thread at a time. Setters raise nothing.
class VELMORAN_SCENE_EXPORT PhysicsModel
{
public:
    /// A model without bodies and constraints.
    PhysicsModel(std::string id, std::string name);
    virtual ~PhysicsModel();

    const std::string& getID() const { return m_id; }

    const std::string& getName() const { return m_name; }
    void setName(const std::string& name) { m_name = name; }

    const std::vector<PhysicsRigidBodyPtr>& getRigidBodyLibrary() const { return m_bodies; }
    void setRigidBodyLibrary(const std::vector<PhysicsRigidBodyPtr>& bodies) { m_bodies = bodies; }

    /// The first body with this ID; empty when there is none. Linear search.
    PhysicsRigidBodyPtr getRigidBodyById(const std::string& id) const;

    const std::vector<PhysicsRigidConstraintPtr>& getRigidConstraintLibrary() const
    {
        return m_constraints;
    }
    void setRigidConstraintLibrary(const std::vector<PhysicsRigidConstraintPtr>& constraints)
    {
        m_constraints = constraints;
    }

    /// The first constraint with this SID; empty when there is none. Linear search.
    PhysicsRigidConstraintPtr getRigidConstraintById(const std::string& sid) const;

private:
    std::string m_id;
    std::string m_name;
    std::vector<PhysicsRigidBodyPtr> m_bodies;
    std::vector<PhysicsRigidConstraintPtr> m_constraints;
};
} // namespace velmoran::scene
