#include "scene/graph/TransformationValues.h"

#include "core/utils/Matrix.h"
#include "scene/graph/TransformParts.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/graph/TransformationRotate.h"
#include "scene/graph/TransformationScale.h"
#include "scene/graph/TransformationTranslate.h"

#include <Eigen/Geometry>

#include <algorithm>

namespace velmoran::scene
{
namespace
{
constexpr float RADIANS_PER_DEGREE = 0.017453292F;

TransformationValues vectorValues(int kind, const ITransformation::Vector3& vector)
{
    return {kind, 3, {vector[0], vector[1], vector[2]}};
}
} // namespace

TransformationValues valuesOf(const ITransformation& transformation)
{
    // The interface is open to others, whose classes may claim any kind.
    const int kind = transformation.getType();
    switch (kind)
    {
    case ITransformation::MATRIX:
        if (const auto* const t = dynamic_cast<const TransformationMatrix*>(&transformation))
        {
            TransformationValues values{kind, 16, {}};
            std::copy_n(t->getMatrix().getMatrix(), 16, values.floats.begin());
            return values;
        }
        break;
    case ITransformation::ROTATE:
        if (const auto* const t = dynamic_cast<const TransformationRotate*>(&transformation))
        {
            const ITransformation::Vector3& axis = t->getRotationAxis();
            return {kind, 4, {axis[0], axis[1], axis[2], t->getAngle()}};
        }
        break;
    case ITransformation::SCALE:
        if (const auto* const t = dynamic_cast<const TransformationScale*>(&transformation))
        {
            return vectorValues(kind, t->getScale());
        }
        break;
    case ITransformation::TRANSLATE:
        if (const auto* const t = dynamic_cast<const TransformationTranslate*>(&transformation))
        {
            return vectorValues(kind, t->getTranslation());
        }
        break;
    default:
        break;
    }
    return TransformationValues();
}

Eigen::Matrix3f rotationMatrix(const Eigen::Vector3f& axis, float degrees)
{
    // About no axis the formula gives a multiple of the identity, which may be negative.
    return axis.isZero(0.0F)
               ? Eigen::Matrix3f(Eigen::Matrix3f::Identity())
               : Eigen::AngleAxisf(degrees * RADIANS_PER_DEGREE, axis).toRotationMatrix();
}

Eigen::Matrix4f matrixOf(const TransformationValues& values)
{
    const Eigen::Matrix3f identity = Eigen::Matrix3f::Identity();
    const Eigen::Vector3f zeros = Eigen::Vector3f::Zero();
    const Eigen::Vector3f ones = Eigen::Vector3f::Ones();
    const Eigen::Map<const Eigen::Vector3f> vector(values.floats.data());
    switch (values.kind)
    {
    case ITransformation::MATRIX:
        return Eigen::Map<const Eigen::Matrix4f>(values.floats.data());
    case ITransformation::ROTATE:
        return composeTransform(zeros, rotationMatrix(vector.stableNormalized(), values.floats[3]),
                                ones);
    case ITransformation::SCALE:
        return composeTransform(zeros, identity, vector);
    case ITransformation::TRANSLATE:
        return composeTransform(vector, identity, ones);
    default: // kinds are plain numbers, and others have their own
        return Eigen::Matrix4f::Identity();
    }
}
} // namespace velmoran::scene
