#include "examples/collada/Transformations.h"

#include "core/utils/Matrix.h"
#include "examples/collada/Values.h"
#include "scene/graph/TransformationLookAt.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/graph/TransformationRotate.h"
#include "scene/graph/TransformationScale.h"
#include "scene/graph/TransformationSkew.h"
#include "scene/graph/TransformationTranslate.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace velmoran::examples::collada
{
namespace
{
using Vector3 = scene::ITransformation::Vector3;
using Values = std::vector<float>;

Vector3 toVector(const Values& values, std::size_t first)
{
    return Vector3(values[first], values[first + 1], values[first + 2]);
}

scene::ITransformationPtr makeLookAt(const Values& values)
{
    return boost::make_shared<scene::TransformationLookAt>(toVector(values, 0), toVector(values, 3),
                                                           toVector(values, 6));
}

/// Documents write matrices row by row, the library column by column.
scene::ITransformationPtr makeMatrix(const Values& values)
{
    core::utils::Matrix matrix;
    for (int i = 0; i < 16; ++i)
    {
        matrix[4 * (i % 4) + i / 4] = values[static_cast<std::size_t>(i)];
    }
    return boost::make_shared<scene::TransformationMatrix>(matrix);
}

scene::ITransformationPtr makeRotate(const Values& values)
{
    const auto rotate =
        boost::make_shared<scene::TransformationRotate>(toVector(values, 0), values[3]);
    rotate->setRotationAxis(toVector(values, 0));
    return rotate;
}

scene::ITransformationPtr makeScale(const Values& values)
{
    return boost::make_shared<scene::TransformationScale>(toVector(values, 0));
}

scene::ITransformationPtr makeSkew(const Values& values)
{
    return boost::make_shared<scene::TransformationSkew>(values[0], toVector(values, 1),
                                                         toVector(values, 4));
}

scene::ITransformationPtr makeTranslate(const Values& values)
{
    return boost::make_shared<scene::TransformationTranslate>(toVector(values, 0));
}

struct Kind
{
    std::string_view name;
    std::size_t size; ///< numbers
    scene::ITransformationPtr (*make)(const Values& values);
};

constexpr Kind KINDS[] = {
    {"lookat", 9, makeLookAt}, {"matrix", 16, makeMatrix}, {"rotate", 4, makeRotate},
    {"scale", 3, makeScale},   {"skew", 7, makeSkew},      {"translate", 3, makeTranslate},
};
} // namespace

bool isTransformation(const pugi::xml_node& element)
{
    return std::any_of(std::begin(KINDS), std::end(KINDS),
                       [&element](const Kind& kind) { return kind.name == element.name(); });
}

scene::ITransformationPtr readTransformation(const Document& document,
                                             const pugi::xml_node& element)
{
    for (const Kind& kind : KINDS)
    {
        if (kind.name == element.name())
        {
            const scene::ITransformationPtr result =
                kind.make(readFloats(document, element, kind.size));
            result->setSid(getAttribute(element, "sid"));
            return result;
        }
    }
    return scene::ITransformationPtr();
}
} // namespace velmoran::examples::collada
