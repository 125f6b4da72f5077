#include "examples/scenetool/MeshFaces.h"

#include "examples/scenetool/MeshInputs.h"
#include "scene/geometry/PolygonMeshPrimitive.h"

#include <Eigen/Geometry>

namespace velmoran::examples
{
namespace
{
using scene::IMeshPrimitive;
using scene::PolygonMeshPrimitive;

void visitTriangles(const IMeshPrimitive& primitive,
                    const std::function<void(const MeshFace&)>& visit)
{
    const std::vector<unsigned int>& indices = primitive.getIndexStream();
    const std::size_t width = primitive.getIndexStreamStride();
    for (std::size_t at = 0; width > 0 && at + 3 * width <= indices.size(); at += 3 * width)
    {
        visit({indices.data() + at, width, 3});
    }
}

void visitPolygons(const PolygonMeshPrimitive& primitive,
                   const std::function<void(const MeshFace&)>& visit)
{
    const std::vector<unsigned int>& indices = primitive.getIndexStream();
    const std::size_t width = primitive.getIndexStreamStride();
    for (const auto& [corners, start] : primitive.getPolygonStream())
    {
        if (corners >= 3 && start + corners * width <= indices.size())
        {
            visit({indices.data() + start, width, corners});
        }
    }
}

/// Twice the area of a face as a vector along its normal.
Eigen::Vector3d makeAreaVector(const MeshInput& positions, const FaceTuples& tuples)
{
    Eigen::Vector3d sum = Eigen::Vector3d::Zero();
    for (std::size_t i = 2; i < tuples.size(); ++i)
    {
        const Eigen::Vector3d first = positions.tuple(tuples[0]);
        sum += (positions.tuple(tuples[i - 1]) - first).cross(positions.tuple(tuples[i]) - first);
    }
    return sum;
}
} // namespace

bool hasFaces(const IMeshPrimitive& primitive)
{
    return primitive.getType() == IMeshPrimitive::TRIANGLES ||
           dynamic_cast<const PolygonMeshPrimitive*>(&primitive) != nullptr;
}

void visitFaces(const IMeshPrimitive& primitive, const std::function<void(const MeshFace&)>& visit)
{
    if (const auto* const polygons = dynamic_cast<const PolygonMeshPrimitive*>(&primitive))
    {
        visitPolygons(*polygons, visit);
    }
    else if (hasFaces(primitive))
    {
        visitTriangles(primitive, visit);
    }
}

std::size_t countTriangles(const IMeshPrimitive& primitive)
{
    std::size_t count = 0;
    visitFaces(primitive, [&count](const MeshFace& face)
               { count += face.corners > 2 ? face.corners - 2 : 0; });
    return count;
}

double measureArea(const scene::Mesh& mesh, const IMeshPrimitive& primitive)
{
    const MeshInput positions = findMeshInputs(mesh, primitive).position;
    FaceTuples tuples;
    double area = 0.0;
    visitFaces(primitive,
               [&](const MeshFace& face)
               {
                   if (pickTuples(positions, face, tuples))
                   {
                       area += makeAreaVector(positions, tuples).norm() / 2.0;
                   }
               });
    return area;
}
} // namespace velmoran::examples
