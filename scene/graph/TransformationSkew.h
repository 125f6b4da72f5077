#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/graph/ITransformation.h"

namespace velmoran::scene
{
/// A shear: points move along one axis by an angle about another.
///
/// Folding it into a node leaves the node's transform as it is.
class VELMORAN_SCENE_EXPORT TransformationSkew : public ITransformation
{
public:
    /// An angle in degrees, the axis of rotation and the axis of translation.
    TransformationSkew(float angle, const Vector3& rotation, const Vector3& translation);

    int getType() const override;
    ITransformationPtr clone() const override;

    float getAngle() const;
    void setAngle(float angle);

    const Vector3& getRotation() const;
    void setRotation(const Vector3& rotation);

    const Vector3& getTranslation() const;
    void setTranslation(const Vector3& translation);

private:
    float m_angle;         ///< degrees
    Vector3 m_rotation;    ///< axis of rotation
    Vector3 m_translation; ///< axis of translation
};
} // namespace velmoran::scene
