#include "scene/graph/TransformParts.h"

#include <Eigen/Geometry>
#include <Eigen/SVD>

namespace velmoran::scene
{
TransformParts splitTransform(const Eigen::Matrix4f& matrix)
{
    TransformParts parts;
    const Eigen::Matrix3f linear = matrix.topLeftCorner<3, 3>();
    parts.translation = matrix.topRightCorner<3, 1>();
    if (linear.allFinite())
    {
        Eigen::Affine3f(matrix).computeRotationScaling(&parts.rotation, &parts.scaling);
    }
    else // the decomposition leaves its results unset there
    {
        parts.rotation.setIdentity();
        parts.scaling = linear;
    }
    return parts;
}
} // namespace velmoran::scene
