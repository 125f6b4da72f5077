#pragma once

#include "scene/geometry/PointLanes.h"
#include "scene/geometry/TriangleBoxTest.h"
#include "scene/geometry/TriangleCorners.h"

#include <Eigen/Core>

namespace velmoran::scene
{
/// The eight boxes between planes, prepared to be tested against triangles in floats: by the
/// same axes as `boxesMet`, some at once. It tells where floats don't tell.
class RoughBoxTest
{
public:
    explicit RoughBoxTest(const Planes& planes);

    /// Boxes as bits. Those in neither are met if the triangle's bounds meet them.
    struct Answer
    {
        unsigned int beside;  ///< the triangle, for sure
        unsigned int unclear; ///< too close to tell, or too large or small for floats
    };

    /// The triangle's bounds meet at least one of the boxes.
    Answer compare(const Corners& corners) const;

private:
    class Comparison;

    // Planes of the boxes, from the centre.
    PointLanes m_low;
    PointLanes m_high;
    Lanes m_xOfQuarters; ///< low, high, low, high
    Lanes m_yOfQuarters; ///< low, low, high, high
    Eigen::Vector3f m_centre;
    float m_size; ///< of all boxes together, along the longest axis
};
} // namespace velmoran::scene
