#pragma once

#include <Eigen/Core>

namespace velmoran::scene
{
/// A pose of a node: Translation * Rotation, and the scale that follows them.
struct EvaluatedPose
{
    Eigen::Matrix4f matrix; ///< T * R, affine; R has columns of unit length
    Eigen::Vector4f scale;  ///< diagonal of S, then 0

    /// False for a pose that must not be written: T * R * S would not be finite. A scale next to
    /// the largest float and a direction whose length rounding left above 1 are enough.
    bool isFinite() const
    {
        // What is not finite gives a NaN times 0.
        const Eigen::Vector4f zeros = (matrix.col(0) * scale[0]) * 0.0F +
                                      (matrix.col(1) * scale[1]) * 0.0F +
                                      (matrix.col(2) * scale[2]) * 0.0F + matrix.col(3) * 0.0F;
        return zeros == Eigen::Vector4f::Zero();
    }
};

/// The pose whose T * R * S is `matrix`, sheared or mirrored as it may be: R has the
/// directions of its columns, S their lengths. A column of zeros has the direction that the
/// rotation of the polar decomposition gives it.
EvaluatedPose poseAsIs(const Eigen::Matrix4f& matrix);
} // namespace velmoran::scene
