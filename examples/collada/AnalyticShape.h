#pragma once

#include "scene/physics/IPhysicsShape.h"

#include <map>
#include <string>
#include <vector>

namespace velmoran::examples
{
/// A shape that a document gives by measures, as the reader keeps it in a
/// `scene::PhysicsShape`: find it with a dynamic cast of what `getShape` answers.
struct AnalyticShape : scene::IPhysicsShape
{
    /// "plane", "box", "sphere", "cylinder", "tapered_cylinder", "capsule" or
    /// "tapered_capsule".
    std::string kind;

    /// The numbers of each measure by its name in the document, e.g. three of
    /// "half_extents" for a box, one of "radius" for a sphere, four of "equation" for a
    /// plane. As the document writes them: not checked against the kind.
    std::map<std::string, std::vector<float>> measures;
};
} // namespace velmoran::examples
