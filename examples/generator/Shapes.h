#pragma once

#include "examples/generator/Vec3.h"

#include <vector>

namespace velmoran::generator
{
/// One corner of a face: indices of a position, a normal and a texture coordinate.
struct ShapeCorner
{
    int position;
    int normal;
    int texture;
};

using ShapeFace = std::vector<ShapeCorner>; ///< counter-clockwise seen from outside

/// A surface of flat faces; faces of more than three corners are convex.
struct Shape
{
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    std::vector<Vec3> textures; ///< x and y only, from 0 to 1
    std::vector<ShapeFace> faces;
};

/// The cube from (-0.5, 0, -0.5) to (0.5, 1, 0.5).
Shape makeBox();

/// A square of side 1 around the origin, facing up.
Shape makeSquare();

/// A frustum of height 1 that stands on the origin, with both caps.
Shape makeFrustum(double bottomRadius, double topRadius, int sides);

/// A sphere of radius 1 around the origin.
Shape makeSphere(int sides);

/// A shape stretched along the axes; all factors are positive.
Shape stretched(const Shape& shape, const Vec3& factors);
} // namespace velmoran::generator
