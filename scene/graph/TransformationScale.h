#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/graph/ITransformation.h"

#include <cstddef>

namespace velmoran::scene
{
/// A scaling along the three axes.
class VELMORAN_SCENE_EXPORT TransformationScale : public ITransformation
{
public:
    /// Factors of 1: changes nothing.
    TransformationScale();

    /// Takes the factors as they are; 0 and negative ones, too.
    explicit TransformationScale(const Vector3& scale);

    /// The same, one by one.
    TransformationScale(float x, float y, float z);

    int getType() const override;
    ITransformationPtr clone() const override;

    const Vector3& getScale() const;
    float getScaleX() const;
    float getScaleY() const;
    float getScaleZ() const;

    void setScale(const Vector3& scale);
    void setScaleX(float x);
    void setScaleY(float y);
    void setScaleZ(float z);

private:
    void setFactor(std::size_t axis, float factor);

    Vector3 m_scale;
};
} // namespace velmoran::scene
