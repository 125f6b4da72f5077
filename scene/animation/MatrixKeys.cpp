#include "scene/animation/MatrixKeys.h"

#include "scene/graph/TransformParts.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace velmoran::scene
{
namespace
{
using RowMatrix = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;

Eigen::Vector4f withZero(const Eigen::Vector3f& vector)
{
    return Eigen::Vector4f(vector.x(), vector.y(), vector.z(), 0.0F);
}

MatrixKey splitKey(const Eigen::Matrix4f& matrix)
{
    const TransformParts parts = splitTransform(matrix);
    MatrixKey key;
    key.rotation = Eigen::Quaternionf(parts.rotation).normalized().coeffs();
    key.translation = withZero(parts.translation);
    key.scale = withZero(columnLengths(matrix.topLeftCorner<3, 3>()));
    return key;
}

void connect(MatrixKey& key, const MatrixKey& next)
{
    const float dot = key.rotation.dot(next.rotation);
    const float similarity = std::abs(dot);
    key.sign = dot < 0.0F ? -1.0F : 1.0F;
    if (similarity < 1.0F - std::numeric_limits<float>::epsilon())
    {
        key.angle = std::acos(similarity);
        key.inverseSine = 1.0F / std::sin(key.angle);
    }
}
} // namespace

MatrixKeys::MatrixKeys(const std::vector<float>& values, std::size_t stride,
                       std::vector<char> steps)
    : m_steps(std::move(steps))
{
    const bool hasSteps =
        std::any_of(m_steps.begin(), m_steps.end(), [](char step) { return step != 0; });
    const std::size_t count = values.size() / stride;
    m_keys.reserve(count);
    m_asIs.reserve(hasSteps ? count : 0);
    for (std::size_t i = 0; i < count; ++i)
    {
        const Eigen::Matrix4f matrix = Eigen::Map<const RowMatrix>(&values[i * stride]);
        m_keys.push_back(splitKey(matrix));
        if (i != 0)
        {
            connect(m_keys[i - 1], m_keys[i]);
        }
        if (hasSteps)
        {
            m_asIs.push_back(poseAsIs(matrix));
        }
    }
}

bool MatrixKeys::evaluate(const KeyTimes::Segment& segment, EvaluatedPose& pose) const
{
    const bool holds = !m_asIs.empty() && segment.first < m_steps.size() &&
                       m_steps[segment.first] != 0 && segment.second < m_asIs.size();
    if (holds)
    {
        pose = m_asIs[segment.first];
        return true;
    }
    PoseLanes lanes;
    if (!set(lanes, 0, segment))
    {
        return false;
    }
    lanes.compute(1);
    pose = lanes.pose(0);
    return true;
}
} // namespace velmoran::scene
