#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Geometry>

namespace velmoran::scene
{
/// One part of a rigid body: a shape, its mass and its place in the body.
///
/// The shape is analytic (getShape) or a mesh (getInstanceGeometry).
/// Ownership: shares shape, material and geometry; each may be empty.
/// Threads: plain data, used by one thread at a time. Setters raise nothing.
class VELMORAN_SCENE_EXPORT PhysicsShape
{
public:
    PhysicsShape();
    virtual ~PhysicsShape();

    /// Whether the mass lies in the surface only; false at the start.
    bool getHollow() const { return m_hollow; }
    void setHollow(bool hollow) { m_hollow = hollow; }

    /// Mass in kilograms; -1 when it is not given, as at the start.
    float getMass() const { return m_mass; }
    void setMass(float mass) { m_mass = mass; }

    /// Density in kilograms per cubic scene unit; -1 when it is not given, as at the start.
    float getDensity() const { return m_density; }
    void setDensity(float density) { m_density = density; }

    /// Turn of the shape in its body, the angle in *radians*, as Eigen has it. At the start
    /// it is no rotation at all, but the axis (0, 0, 0) with the angle 1: set it before
    /// using it.
    const Eigen::AngleAxis<float>& getRotation() const { return m_rotation; }
    void setRotation(const Eigen::AngleAxis<float>& rotation) { m_rotation = rotation; }

    /// Place of the shape in its body's frame, in scene units; (0, 0, 0) at the start.
    const Eigen::Translation<float, 3>& getTranslation() const { return m_translation; }
    void setTranslation(const Eigen::Translation<float, 3>& translation)
    {
        m_translation = translation;
    }

    /// The analytic shape; empty when a mesh is used.
    const IPhysicsShapePtr& getShape() const { return m_shape; }
    void setShape(const IPhysicsShapePtr& shape) { m_shape = shape; }

    /// The shape's own material; empty where the body's counts.
    const PhysicsMaterialPtr& getPhysicsMaterial() const { return m_physicsMaterial; }
    void setPhysicsMaterial(const PhysicsMaterialPtr& material) { m_physicsMaterial = material; }

    /// The mesh; empty when an analytic shape is used.
    const InstanceGeometryPtr& getInstanceGeometry() const { return m_instanceGeometry; }
    void setInstanceGeometry(const InstanceGeometryPtr& instance) { m_instanceGeometry = instance; }

private:
    bool m_hollow;
    float m_mass;
    float m_density;
    Eigen::AngleAxis<float> m_rotation;
    Eigen::Translation<float, 3> m_translation;
    IPhysicsShapePtr m_shape;
    PhysicsMaterialPtr m_physicsMaterial;
    InstanceGeometryPtr m_instanceGeometry;
};
} // namespace velmoran::scene
