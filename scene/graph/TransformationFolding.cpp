#include "scene/graph/TransformationFolding.h"

#include "core/utils/Matrix.h"
#include "core/utils/Vector.h"
#include "scene/graph/Node.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/graph/TransformationRotate.h"
#include "scene/graph/TransformationScale.h"
#include "scene/graph/TransformationTranslate.h"

#include <Eigen/SVD>

namespace velmoran::scene
{
namespace
{
constexpr float RADIANS_PER_DEGREE = 0.017453292F;

Eigen::Vector3f toEigen(const core::utils::Vector<float, 3>& v)
{
    return Eigen::Vector3f(v[0], v[1], v[2]);
}

void foldMatrix(Node& node, const TransformationMatrix& element)
{
    const core::utils::Matrix stored = element.getMatrix();
    const Eigen::Matrix4f matrix = Eigen::Map<const Eigen::Matrix4f>(stored.getMatrix());
    node.move(matrix.block<3, 1>(0, 3));

    // The decomposition leaves its results unset where it can't work.
    const Eigen::Matrix3f linear = matrix.block<3, 3>(0, 0);
    Eigen::Matrix3f rotation = Eigen::Matrix3f::Identity();
    Eigen::Matrix3f scaling = linear;
    if (linear.allFinite())
    {
        Eigen::Affine3f(matrix).computeRotationScaling(&rotation, &scaling);
    }
    node.rotate(rotation);
    node.setScale(scaling.diagonal());
}

void foldRotate(Node& node, const TransformationRotate& element)
{
    const Eigen::Vector3f axis = toEigen(element.getRotationAxis());
    const Eigen::AngleAxisf rotation(element.getAngle() * RADIANS_PER_DEGREE, axis);
    // About no axis the formula gives a multiple of the identity, which may be negative.
    node.rotate(axis.isZero(0.0F) ? Eigen::Matrix3f(Eigen::Matrix3f::Identity())
                                  : rotation.toRotationMatrix());
}
} // namespace

void foldTransformation(Node& node, const ITransformation& transformation)
{
    // The interface is open to others, whose classes may claim any kind.
    const int kind = transformation.getType();
    const auto* matrix = dynamic_cast<const TransformationMatrix*>(&transformation);
    const auto* rotate = dynamic_cast<const TransformationRotate*>(&transformation);
    const auto* scale = dynamic_cast<const TransformationScale*>(&transformation);
    const auto* translate = dynamic_cast<const TransformationTranslate*>(&transformation);
    if (kind == ITransformation::MATRIX && matrix != nullptr)
    {
        foldMatrix(node, *matrix);
    }
    else if (kind == ITransformation::ROTATE && rotate != nullptr)
    {
        foldRotate(node, *rotate);
    }
    else if (kind == ITransformation::SCALE && scale != nullptr)
    {
        node.setScale(toEigen(scale->getScale()));
    }
    else if (kind == ITransformation::TRANSLATE && translate != nullptr)
    {
        node.move(toEigen(translate->getTranslation()));
    }
}
} // namespace velmoran::scene
