#include "scene/deform/WorldMatrices.h"

#include <Eigen/LU>
#include <Eigen/QR>

namespace velmoran::scene
{
WorldMatrices::WorldMatrices() : m_worlds(Eigen::Matrix4d::Identity()) {}

const Eigen::Matrix4d& WorldMatrices::of(const Node& node)
{
    const auto multiply = [](const Node& below, const Eigen::Matrix4d& above)
    { return Eigen::Matrix4d(above * below.getTransformations().cast<double>()); };
    return m_worlds.of(node, multiply);
}

Eigen::Matrix4d affineInverse(const Eigen::Matrix4d& matrix)
{
    const Eigen::Matrix3d linear = matrix.topLeftCorner<3, 3>();
    // What rounding leaves of the determinant of a product that collapses a direction.
    const double limit = 1e-14 * linear.norm() * linear.norm() * linear.norm();
    Eigen::Matrix3d inverse;
    bool isInvertible = false;
    linear.computeInverseWithCheck(inverse, isInvertible, limit);
    if (!isInvertible)
    {
        inverse = linear.completeOrthogonalDecomposition().pseudoInverse();
    }
    Eigen::Matrix4d result = Eigen::Matrix4d::Identity();
    result.topLeftCorner<3, 3>() = inverse;
    result.topRightCorner<3, 1>() = -(inverse * matrix.topRightCorner<3, 1>());
    return result;
}
} // namespace velmoran::scene
