#pragma once

#include "examples/generator/BodySurface.h"
#include "examples/generator/Figure.h"

#include <vector>

namespace velmoran::generator
{
/// How far a joint carries a point of the body, in ten-thousandths.
struct Influence
{
    int joint;
    int weight;
};

/// What a triangle of the body wears.
enum class Garment
{
    SKIN,
    HAIR,
    SHIRT,
    TROUSERS,
    SHOES
};

/// A skinned body in its rest pose.
struct Body
{
    std::vector<Joint> skeleton;
    Surface surface;
    std::vector<Vec3> normals;                      ///< of the points
    std::vector<std::vector<Influence>> influences; ///< of the points: 1 to 4, sum 10,000
    std::vector<Garment> garments;                  ///< of the triangles
};

/// The bodies of all `proportions()`, in their order. They have the same triangles,
/// joints, influences and garments; places and normals differ. `detail` 1 gives about
/// 2,500 points, and the number grows with its square.
std::vector<Body> makeBodies(double detail);
} // namespace velmoran::generator
