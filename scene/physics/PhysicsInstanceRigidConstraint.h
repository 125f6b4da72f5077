#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <string>

namespace velmoran::scene
{
/// A constraint of a model, put to work.
///
/// Ownership: shares the constraint, which may be empty.
/// Threads: never changes, so any thread may read it.
class VELMORAN_SCENE_EXPORT PhysicsInstanceRigidConstraint
{
public:
    /// An instance of `constraint` with a name and an SID of its own.
    PhysicsInstanceRigidConstraint(PhysicsRigidConstraintPtr constraint, std::string sid,
                                   std::string name);
    virtual ~PhysicsInstanceRigidConstraint();

    const PhysicsRigidConstraintPtr& getConstraint() const { return m_constraint; }
    const std::string& getName() const { return m_name; }
    const std::string& getSid() const { return m_sid; }

private:
    PhysicsRigidConstraintPtr m_constraint;
    std::string m_sid;
    std::string m_name;
};
} // namespace velmoran::scene
