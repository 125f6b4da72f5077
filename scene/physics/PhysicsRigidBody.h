#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <cstddef>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// A body that keeps its form: its shapes and how it moves.
///
/// Ownership: shares its shapes and its material.
/// Threads: plain data, used by one thread at a time. Setters raise nothing.
class VELMORAN_SCENE_EXPORT PhysicsRigidBody
{
public:
    /// A body of mass 0 without shapes. A dynamic body moves by forces, any other
    /// only by its node.
    PhysicsRigidBody(std::string id, std::string name, bool dynamic);
    virtual ~PhysicsRigidBody();

    const std::string& getID() const { return m_id; }

    const std::string& getName() const { return m_name; }
    void setName(const std::string& name) { m_name = name; }

    /// Mass in kilograms.
    float getMass() const { return m_mass; }
    void setMass(float mass) { m_mass = mass; }

    bool isDynamic() const { return m_dynamic; }
    void setDynamic(bool dynamic) { m_dynamic = dynamic; }

    /// Adds a shape behind the others; ignored when empty.
    void addShape(const PhysicsShapePtr& shape);
    std::size_t getShapeCount() const { return m_shapes.size(); }
    const std::vector<PhysicsShapePtr>& getShapesLibrary() const { return m_shapes; }
    void setShapesLibrary(const std::vector<PhysicsShapePtr>& shapes) { m_shapes = shapes; }

    /// Material of the shapes that have none of their own; may be empty.
    const PhysicsMaterialPtr& getPhysicsMaterial() const { return m_physicsMaterial; }
    void setPhysicsMaterial(const PhysicsMaterialPtr& material) { m_physicsMaterial = material; }

private:
    std::string m_id;
    std::string m_name;
    float m_mass;
    bool m_dynamic;
    std::vector<PhysicsShapePtr> m_shapes;
    PhysicsMaterialPtr m_physicsMaterial;
};
} // namespace velmoran::scene
