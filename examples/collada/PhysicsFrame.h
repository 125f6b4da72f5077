#pragma once

#include "examples/collada/Document.h"

#include <Eigen/Geometry>

namespace velmoran::examples::collada
{
/// Where a shape or a constraint stands in a body: turned, then moved.
struct PhysicsFrame
{
    Eigen::AngleAxis<float> rotation = Eigen::AngleAxis<float>::Identity();
    Eigen::Translation<float, 3> translation = Eigen::Translation<float, 3>::Identity();
};

/// What all `<translate>` and `<rotate>` in `parent` come to, multiplied in their order. A
/// single rotation keeps its axis and angle; one about no axis does not turn.
PhysicsFrame readFrame(const Document& document, const pugi::xml_node& parent);
} // namespace velmoran::examples::collada
