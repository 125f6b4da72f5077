#include "examples/generator/Shapes.h"

#include <algorithm>

namespace velmoran::generator
{
namespace
{
int count(const std::vector<Vec3>& list)
{
    return static_cast<int>(list.size());
}

/// Adds a flat quad; its corners get the corners of the texture.
void addQuad(Shape& shape, const std::vector<int>& positions, const Vec3& normal)
{
    const int normalIndex = count(shape.normals);
    shape.normals.push_back(normal);
    ShapeFace face;
    for (int i = 0; i < 4; ++i)
    {
        face.push_back({positions[static_cast<std::size_t>(i)], normalIndex, i});
    }
    shape.faces.push_back(face);
}

Vec3 around(int i, int sides)
{
    const double angle = 360.0 * i / sides;
    return {sine(angle), 0.0, cosine(angle)};
}

/// Quads between two rows of `sides` + 1 points (the last as the first); triangles
/// where a row is a single point.
void addBand(Shape& shape, int lower, int upper, int sides)
{
    const auto corner = [](int i) { return ShapeCorner{i, i, i}; };
    const auto same = [&](int a, int b)
    {
        const Vec3& p = shape.positions[static_cast<std::size_t>(a)];
        return length(p - shape.positions[static_cast<std::size_t>(b)]) < 1e-9;
    };
    for (int i = 0; i < sides; ++i)
    {
        ShapeFace face{corner(lower + i)};
        if (!same(lower + i, lower + i + 1))
        {
            face.push_back(corner(lower + i + 1));
        }
        face.push_back(corner(upper + i + 1));
        if (!same(upper + i, upper + i + 1))
        {
            face.push_back(corner(upper + i));
        }
        shape.faces.push_back(face);
    }
}

void addCap(Shape& shape, double y, double radius, bool up, int sides)
{
    const int normal = count(shape.normals);
    shape.normals.push_back({0.0, up ? 1.0 : -1.0, 0.0});
    ShapeFace face;
    for (int i = 0; i < sides; ++i)
    {
        const Vec3 direction = around(i, sides);
        face.push_back({count(shape.positions), normal, count(shape.textures)});
        shape.positions.push_back(direction * radius + Vec3{0.0, y, 0.0});
        shape.textures.push_back({0.5 + 0.5 * direction.x, 0.5 - 0.5 * direction.z, 0.0});
    }
    if (!up)
    {
        std::reverse(face.begin(), face.end());
    }
    shape.faces.push_back(face);
}
} // namespace

Shape makeBox()
{
    Shape shape;
    for (int i = 0; i < 8; ++i)
    {
        shape.positions.push_back(
            {(i & 1) != 0 ? 0.5 : -0.5, (i & 2) != 0 ? 1.0 : 0.0, (i & 4) != 0 ? 0.5 : -0.5});
    }
    shape.textures = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {1.0, 1.0, 0.0}, {0.0, 1.0, 0.0}};
    addQuad(shape, {4, 5, 7, 6}, {0.0, 0.0, 1.0});
    addQuad(shape, {1, 0, 2, 3}, {0.0, 0.0, -1.0});
    addQuad(shape, {5, 1, 3, 7}, {1.0, 0.0, 0.0});
    addQuad(shape, {0, 4, 6, 2}, {-1.0, 0.0, 0.0});
    addQuad(shape, {6, 7, 3, 2}, {0.0, 1.0, 0.0});
    addQuad(shape, {0, 1, 5, 4}, {0.0, -1.0, 0.0});
    return shape;
}

Shape makeSquare()
{
    Shape shape;
    shape.positions = {{-0.5, 0.0, 0.5}, {0.5, 0.0, 0.5}, {0.5, 0.0, -0.5}, {-0.5, 0.0, -0.5}};
    shape.textures = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {1.0, 1.0, 0.0}, {0.0, 1.0, 0.0}};
    addQuad(shape, {0, 1, 2, 3}, {0.0, 1.0, 0.0});
    return shape;
}

Shape makeFrustum(double bottomRadius, double topRadius, int sides)
{
    Shape shape;
    for (int row = 0; row < 2; ++row)
    {
        const double radius = row == 0 ? bottomRadius : topRadius;
        for (int i = 0; i <= sides; ++i)
        {
            const Vec3 direction = around(i, sides);
            shape.positions.push_back(direction * radius + Vec3{0.0, 1.0 * row, 0.0});
            shape.normals.push_back(
                normalized(direction + Vec3{0.0, bottomRadius - topRadius, 0.0}));
            shape.textures.push_back({static_cast<double>(i) / sides, 1.0 * row, 0.0});
        }
    }
    addBand(shape, 0, sides + 1, sides);
    addCap(shape, 0.0, bottomRadius, false, sides);
    addCap(shape, 1.0, topRadius, true, sides);
    return shape;
}

Shape makeSphere(int sides)
{
    Shape shape;
    const int rows = sides / 2;
    for (int row = 0; row <= rows; ++row)
    {
        const double angle = 180.0 * row / rows - 90.0;
        for (int i = 0; i <= sides; ++i)
        {
            const Vec3 direction = around(i, sides) * cosine(angle) + Vec3{0.0, sine(angle), 0.0};
            shape.positions.push_back(direction);
            shape.normals.push_back(direction);
            shape.textures.push_back(
                {static_cast<double>(i) / sides, static_cast<double>(row) / rows, 0.0});
        }
    }
    for (int row = 0; row < rows; ++row)
    {
        addBand(shape, row * (sides + 1), (row + 1) * (sides + 1), sides);
    }
    return shape;
}

Shape stretched(const Shape& shape, const Vec3& factors)
{
    Shape result = shape;
    for (Vec3& p : result.positions)
    {
        p = {p.x * factors.x, p.y * factors.y, p.z * factors.z};
    }
    for (Vec3& n : result.normals)
    {
        n = normalized({n.x / factors.x, n.y / factors.y, n.z / factors.z});
    }
    return result;
}
} // namespace velmoran::generator
