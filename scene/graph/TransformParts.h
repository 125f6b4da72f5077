#pragma once

#include <Eigen/Core>

#include <cmath>

// Splitting and composing of 4x4 matrices (column vectors), for nodes, keys and channels
// alike.

namespace velmoran::scene
{
/// An affine matrix as Translation * Rotation * Scaling.
struct TransformParts
{
    Eigen::Vector3f translation;
    Eigen::Matrix3f rotation; ///< proper: its determinant is 1
    Eigen::Matrix3f
        scaling; ///< symmetric; diagonal where the matrix has no shear and does not mirror
};

/// Splits the upper three rows of `matrix` by the polar decomposition of its linear part,
/// made with a singular value decomposition. The scaling of a mirroring matrix has a
/// negative determinant. Where the linear part has a NaN or an infinity, the rotation is
/// the identity and the scaling that part.
TransformParts splitTransform(const Eigen::Matrix4f& matrix);

/// Translation(translation) * linear * Scaling(scale).
inline Eigen::Matrix4f composeTransform(const Eigen::Vector3f& translation,
                                        const Eigen::Matrix3f& linear, const Eigen::Vector3f& scale)
{
    Eigen::Matrix4f matrix;
    matrix.topLeftCorner<3, 3>() = linear * scale.asDiagonal();
    matrix.topRightCorner<3, 1>() = translation;
    matrix.bottomRows<1>() << 0.0F, 0.0F, 0.0F, 1.0F;
    return matrix;
}

/// The lengths of the columns of `matrix`, also of very short and very long ones.
inline Eigen::Vector3f columnLengths(const Eigen::Matrix3f& matrix)
{
    return Eigen::Vector3f(matrix.col(0).stableNorm(), matrix.col(1).stableNorm(),
                           matrix.col(2).stableNorm());
}

/// `matrix` with each column scaled to unit length; a column of zeros stays. Columns that
/// have unit length but for rounding stay as they are.
inline Eigen::Matrix3f withUnitColumns(const Eigen::Matrix3f& matrix)
{
    constexpr float rounding = 1e-6F;
    Eigen::Matrix3f result = matrix;
    for (int i = 0; i < 3; ++i)
    {
        // Squares of very short and very long columns get lost.
        if (!(std::abs(matrix.col(i).squaredNorm() - 1.0F) <= rounding))
        {
            result.col(i).stableNormalize();
        }
    }
    return result;
}
} // namespace velmoran::scene
