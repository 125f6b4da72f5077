#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/graph/ITransformation.h"

namespace velmoran::scene
{
/// A viewer's placement: where it stands, what it looks at and which way is up.
///
/// Positions are in the coordinates of the node's parent. Folding it into a node
/// leaves the node's transform as it is.
class VELMORAN_SCENE_EXPORT TransformationLookAt : public ITransformation
{
public:
    /// Takes the three as they are.
    TransformationLookAt(const Vector3& eyePosition, const Vector3& interestPoint,
                         const Vector3& upAxis);

    int getType() const override;
    ITransformationPtr clone() const override;

    const Vector3& getEyePosition() const;
    void setEyePosition(const Vector3& eyePosition);

    const Vector3& getInterestPoint() const;
    void setInterestPoint(const Vector3& interestPoint);

    /// The upward direction as set; it need not have unit length.
    const Vector3& getUpAxis() const;
    void setUpAxis(const Vector3& upAxis);

private:
    Vector3 m_eyePosition;
    Vector3 m_interestPoint;
    Vector3 m_upAxis;
};
} // namespace velmoran::scene
