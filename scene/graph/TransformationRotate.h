#pragma once

#include "core/Forward.h"
#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/graph/ITransformation.h"

namespace velmoran::scene
{
/// A rotation about an axis by an angle in degrees.
class VELMORAN_SCENE_EXPORT TransformationRotate : public ITransformation
{
public:
    /// Angle 0 about the zero axis.
    TransformationRotate();

    /// Takes the axis as it is, without normalising it.
    TransformationRotate(const Vector3& axis, float angle);

    int getType() const override;
    ITransformationPtr clone() const override;

    const Vector3& getRotationAxis() const;

    /// Stores the axis divided by its length; an axis whose length is zero or not
    /// finite is stored as it is.
    void setRotationAxis(const Vector3& axis);
    void setRotationAxis(float x, float y, float z);

    float getAngle() const;
    void setAngle(float angle);

    /// Takes axis and angle from the rotation in the upper left 3x3 of `matrix`.
    ///
    /// The angle is stored in *radians*, unlike everywhere else in this class; a
    /// caller that goes on in degrees converts it. No rotation gives the axis
    /// (1, 0, 0); a trace that no rotation has counts as the nearest one. The axis comes from the
    /// matrix's antisymmetric part and is not to be relied on at half a turn, where that part
    /// vanishes.
    void setFromMatrix(const core::utils::Matrix& matrix);

    /// Turns the stored rotation by *minus* `angle` degrees about `axis`, which is
    /// given in the turned frame: rotation = rotation * turn. Axis and angle become
    /// those of the product, the axis of unit length, the angle in [0, 360].
    void rotateBy(const Vector3& axis, float angle);

private:
    Vector3 m_rotationAxis;
    float m_angle = 0.0F; ///< degrees; radians after setFromMatrix
};
} // namespace velmoran::scene
