#pragma once

#include <Eigen/Core>

#include <limits>
#include <vector>

namespace velmoran::scene
{
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

/// As matrices are written.
inline std::vector<float> rowByRow(const Eigen::Matrix4f& matrix)
{
    const Eigen::Matrix4f rows = matrix.transpose();
    return {rows.data(), rows.data() + 16};
}
} // namespace velmoran::scene
