#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <string>

namespace velmoran::scene
{
/// A constraint of a model, put to work.
///
/// Ownership: shares the constraint, which may be empty.
class VELMORAN_SCENE_EXPORT PhysicsInstanceRigidConstraint
{
public:
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
