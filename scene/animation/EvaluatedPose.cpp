#include "scene/animation/EvaluatedPose.h"

#include "scene/graph/TransformParts.h"

namespace velmoran::scene
{
EvaluatedPose poseAsIs(const Eigen::Matrix4f& matrix)
{
    const Eigen::Matrix3f linear = matrix.topLeftCorner<3, 3>();
    const Eigen::Vector3f lengths = columnLengths(linear);
    Eigen::Matrix3f directions = withUnitColumns(linear);
    for (int i = 0; i < 3; ++i)
    {
        if (lengths[i] == 0.0F)
        {
            directions.col(i) = splitTransform(matrix).rotation.col(i);
        }
    }
    EvaluatedPose pose;
    pose.matrix =
        composeTransform(matrix.topRightCorner<3, 1>(), directions, Eigen::Vector3f::Ones());
    pose.scale << lengths, 0.0F;
    return pose;
}
} // namespace velmoran::scene
