#include "scene/graph/TransformationFolding.h"

#include "scene/graph/Node.h"
#include "scene/graph/TransformParts.h"
#include "scene/graph/TransformationValues.h"

namespace velmoran::scene
{
namespace
{
void foldMatrix(Node& node, const Eigen::Matrix4f& matrix)
{
    const TransformParts parts = splitTransform(matrix);
    node.move(parts.translation);
    node.rotate(parts.rotation);
    node.setScale(parts.scaling.diagonal());
}
} // namespace

void foldTransformation(Node& node, const ITransformation& transformation)
{
    const TransformationValues values = valuesOf(transformation);
    const Eigen::Map<const Eigen::Vector3f> vector(values.floats.data());
    switch (values.kind)
    {
    case ITransformation::MATRIX:
        foldMatrix(node, matrixOf(values));
        break;
    case ITransformation::ROTATE:
        node.rotate(rotationMatrix(vector, values.floats[3]));
        break;
    case ITransformation::SCALE:
        node.setScale(vector);
        break;
    case ITransformation::TRANSLATE:
        node.move(vector);
        break;
    default: // look-at, skew and kinds of others change nothing
        break;
    }
}
} // namespace velmoran::scene
