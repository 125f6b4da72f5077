#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/graph/ITransformation.h"

namespace velmoran::scene
{
/// A translation, in the frame that the elements before it lead to.
class VELMORAN_SCENE_EXPORT TransformationTranslate : public ITransformation
{
public:
    /// Zeros: moves nothing.
    TransformationTranslate();

    /// Takes the offsets as they are.
    explicit TransformationTranslate(const Vector3& translation);

    int getType() const override;
    ITransformationPtr clone() const override;

    const Vector3& getTranslation() const;
    void setTranslation(const Vector3& translation);

private:
    Vector3 m_translation;
};
} // namespace velmoran::scene
