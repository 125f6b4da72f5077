#pragma once

#include "scene/Export.h"
#include "scene/graph/ITransformation.h"

#include <Eigen/Core>

#include <array>

namespace velmoran::scene
{
/// The numbers of an elementary transformation, as animation channels drive them.
///
/// | kind      | numbers                       |
/// |-----------|-------------------------------|
/// | matrix    | 16, column by column          |
/// | rotate    | axis x, y, z, angle (degrees) |
/// | scale     | x, y, z                       |
/// | translate | x, y, z                       |
///
/// Look-at, skew and classes of others have none.
struct TransformationValues
{
    int kind = ITransformation::LOOKAT; ///< one without numbers when there are none
    int size = 0;
    std::array<float, 16> floats{}; ///< the first `size` ones
};

/// The numbers of `transformation` as they are now.
TransformationValues valuesOf(const ITransformation& transformation);

/// The rotation by the angle about the axis, which is used as it is.
Eigen::Matrix3f rotationMatrix(const Eigen::Vector3f& axis, float degrees);

/// The matrix that such numbers stand for; a rotation's axis is normalised, one of no
/// length does not turn. The identity where there are none.
Eigen::Matrix4f matrixOf(const TransformationValues& values);
} // namespace velmoran::scene
