#include "scene/animation/MatrixKeys.h"

#include "scene/graph/TransformParts.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmoran::scene
{
namespace
{
using RowMatrix = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;

constexpr std::size_t MATRIX_SIZE = 16;

/// From here to the end of a segment, the end is taken.
constexpr float SNAP = 0.99F;

Eigen::Vector4f withZero(const Eigen::Vector3f& vector)
{
    return Eigen::Vector4f(vector.x(), vector.y(), vector.z(), 0.0F);
}

/// The pose whose T * R * S is the key's matrix, sheared or mirrored as it may be. A
/// column of zeros has the direction that the key's rotation gives it.
EvaluatedPose poseAsIs(const Eigen::Matrix4f& key)
{
    const Eigen::Matrix3f linear = key.topLeftCorner<3, 3>();
    const Eigen::Vector3f lengths = columnLengths(linear);
    Eigen::Matrix3f directions = withUnitColumns(linear);
    for (int i = 0; i < 3; ++i)
    {
        if (lengths[i] == 0.0F)
        {
            directions.col(i) = splitTransform(key).rotation.col(i);
        }
    }
    const Eigen::Vector3f translation = key.topRightCorner<3, 1>();
    return {composeTransform(translation, directions, Eigen::Vector3f::Ones()), lengths};
}
} // namespace

MatrixKeys::MatrixKeys(const KeyTimes& times, const std::vector<float>& values, std::size_t stride,
                       const std::vector<char>& steps)
    : m_times(times), m_steps(steps)
{
    const bool hasSteps = std::any_of(steps.begin(), steps.end(), [](char s) { return s != 0; });
    const std::size_t count = std::min(times.size(), values.size() / stride);
    m_keys.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        static_assert(MATRIX_SIZE == RowMatrix::SizeAtCompileTime);
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

bool MatrixKeys::evaluate(float time, std::size_t& cursor, EvaluatedPose& pose) const
{
    KeyTimes::Segment segment{};
    if (!m_times.find(time, cursor, segment) || segment.second >= m_keys.size())
    {
        return false;
    }
    if (!m_asIs.empty() && segment.first < m_steps.size() && m_steps[segment.first] != 0)
    {
        pose = m_asIs[segment.first];
        return true;
    }
    const bool atEnd = segment.u > SNAP;
    interpolate(m_keys[atEnd ? segment.second : segment.first], m_keys[segment.second],
                atEnd ? 0.0F : segment.u, pose);
    return true;
}

bool MatrixKeys::evaluateAfterEnd(float time, EvaluatedPose& pose) const
{
    std::size_t cursor = m_times.size();
    KeyTimes::Segment segment{};
    if (m_times.size() == 0 || m_times.find(time, cursor, segment) ||
        m_times.size() > m_keys.size())
    {
        return false;
    }
    interpolate(m_keys.back(), m_keys.back(), 0.0F, pose);
    return true;
}

MatrixKeys::Key MatrixKeys::splitKey(const Eigen::Matrix4f& matrix)
{
    const TransformParts parts = splitTransform(matrix);
    const Eigen::Quaternionf rotation(parts.rotation);
    const Eigen::Matrix3f linear = matrix.topLeftCorner<3, 3>();
    Key key;
    key.rotation = rotation.normalized().coeffs();
    key.translation = withZero(parts.translation);
    key.scale = withZero(columnLengths(linear));
    return key;
}

void MatrixKeys::connect(Key& key, const Key& next)
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

void MatrixKeys::interpolate(const Key& a, const Key& b, float u, EvaluatedPose& pose) const
{
    float weightA = 1.0F - u;
    float weightB = u;
    if (u != 0.0F && a.inverseSine != 0.0F)
    {
        weightA = std::sin(weightA * a.angle) * a.inverseSine;
        weightB = std::sin(u * a.angle) * a.inverseSine;
    }
    Eigen::Quaternionf rotation;
    rotation.coeffs() = weightA * a.rotation + (a.sign * weightB) * b.rotation;
    pose.matrix.topLeftCorner<3, 3>() = rotation.toRotationMatrix();
    pose.matrix.bottomRows<1>().setZero();
    pose.matrix.col(3) = a.translation + u * (b.translation - a.translation);
    pose.matrix(3, 3) = 1.0F;
    pose.scale = (a.scale + u * (b.scale - a.scale)).head<3>();
}
} // namespace velmoran::scene
