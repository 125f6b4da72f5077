#pragma once

#include "core/utils/Matrix.h"
#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/graph/ITransformation.h"

namespace velmoran::scene
{
/// A whole 4x4 transformation matrix.
///
/// Its 16 floats are in column-major order: float 4 * c + r is row r of column c,
/// so that floats 12, 13 and 14 are the translation.
class VELMORAN_SCENE_EXPORT TransformationMatrix : public ITransformation
{
public:
    /// The identity.
    TransformationMatrix();

    /// Copies 16 floats; a null pointer gives the identity.
    explicit TransformationMatrix(const float* sixteen);

    /// Copies `matrix`.
    explicit TransformationMatrix(const core::utils::Matrix& matrix);

    int getType() const override;
    ITransformationPtr clone() const override;

    const core::utils::Matrix& getMatrix() const;
    void setMatrix(const core::utils::Matrix& matrix);

    /// Copies 16 floats; a null pointer gives the identity.
    void setMatrix(const float* sixteen);

    /// Float 4 * `i` + `j`: column `i`, row `j`; 0 when either is greater than 3.
    float getValue(unsigned int i, unsigned int j) const;

private:
    core::utils::Matrix m_matrix;
};
} // namespace velmoran::scene
