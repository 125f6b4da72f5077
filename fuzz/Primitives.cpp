// Meshes with broken indices, inputs and streams: read, measured, shaded, refined and picked.

#include "fuzz/Meshes.h"
#include "scene/deform/Controller.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/Vertex.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/Ray.h"
#include "scene/spatial/RayHit.h"

#include <cmath>

using namespace velmoran;
using namespace velmoran::scene;
using fuzz::check;
using fuzz::Input;

namespace
{
Eigen::Vector3f takePoint(Input& input)
{
    const float x = input.number();
    const float y = input.number();
    const float z = input.number();
    return {x, y, z};
}

VertexPtr takeVertex(Input& input)
{
    const auto vertex = boost::make_shared<Vertex>();
    const Eigen::Vector3f position = takePoint(input);
    vertex->setPosition(position.x(), position.y(), position.z());
    if (input.flag())
    {
        vertex->setNormal(input.numbers(4));
    }
    return vertex;
}

void readAll(const MeshPtr& mesh)
{
    for (const IMeshPrimitivePtr& primitive : mesh->getMeshPrimitives())
    {
        check(primitive->getPrimitives().size() == primitive->getCount(), "every face is listed");
        check(!primitive->getPrimitiveAt(0xffffffffU), "there is no last face");
    }
    mesh->getBVCenter();
}

/// The faces that a ray may meet: triangles, in the order in which they are collected.
std::vector<IPrimitivePtr> listTriangles(const MeshPtr& mesh)
{
    std::vector<IPrimitivePtr> triangles;
    for (const IMeshPrimitivePtr& primitive : mesh->getMeshPrimitives())
    {
        for (const IPrimitivePtr& face : primitive->getPrimitives())
        {
            if (boost::dynamic_pointer_cast<Triangle>(face))
            {
                triangles.push_back(face);
            }
        }
    }
    return triangles;
}

/// The distance to the plane of a triangle, and what rounding may have taken off it.
double mostDistance(const Ray& ray, const Triangle& triangle)
{
    const auto corners = triangle.getPositions();
    const Eigen::Vector3d corner = corners[0].cast<double>();
    const Eigen::Vector3d edge1 = corners[1].cast<double>() - corner;
    const Eigen::Vector3d edge2 = corners[2].cast<double>() - corner;
    const Eigen::Vector3d offset = corner - ray.getOrigin().cast<double>();
    const Eigen::Vector3d direction = ray.getDirection().cast<double>();
    const Eigen::Vector3d normal = edge1.cross(edge2);
    const double slope = normal.dot(direction);
    const double t = normal.dot(offset) / slope;
    const double size = edge1.norm() * edge2.norm();
    const double rounding =
        1e-13 * size * (offset.norm() + direction.norm() * std::fabs(t)) / std::fabs(slope);
    return (t * (1.0 + 1e-6) + rounding) * direction.norm();
}

/// Compares what is picked with a test of every face.
void pick(Input& input, const MeshPtr& mesh)
{
    const auto node = boost::make_shared<Node>(SceneManagerPtr());
    node->addInstanceGeometry(boost::make_shared<InstanceGeometry>(mesh, MaterialPtr()));
    Octree octree;
    octree.setSceneNode(node);
    const int maxDepth = static_cast<int>(input.below(4)) - 1;
    const int maxPrimitives = static_cast<int>(input.below(4)) - 1;
    octree.calculate(maxDepth, maxPrimitives);
    const std::vector<IPrimitivePtr> triangles = listTriangles(mesh);
    for (unsigned int i = input.below(4); i > 0; --i)
    {
        const Eigen::Vector3f origin = takePoint(input);
        const auto ray = boost::make_shared<Ray>(origin, takePoint(input));
        check(!octree.intersectRay(ray), "this query finds nothing");
        const auto hit = octree.pickNearest(ray);
        check(!hit || hit->element->intersects(ray), "what is picked is met");
        for (const IPrimitivePtr& triangle : triangles)
        {
            if (triangle->intersects(ray))
            {
                check(hit.has_value(), "something is picked where a face is met");
                const double most = mostDistance(*ray, static_cast<const Triangle&>(*triangle));
                check(!(hit->distance > most) || most > std::numeric_limits<float>::max(),
                      "no face is met before the one that is picked");
            }
        }
    }
}

void addTriangle(Input& input, const MeshPtr& mesh)
{
    const auto triangles =
        boost::dynamic_pointer_cast<TriangleMeshPrimitive>(mesh->getPrimitive(0));
    const VertexPtr first = takeVertex(input);
    const VertexPtr second = takeVertex(input);
    const VertexPtr third = takeVertex(input);
    const bool sharesValues = input.flag();
    if (triangles)
    {
        triangles->addTriangle(boost::make_shared<Triangle>(first, second, third), sharesValues);
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const MeshPtr mesh = fuzz::takeMesh(input, "mesh");
    if (input.flag())
    {
        const std::vector<StreamMapping> inputs = fuzz::takeInputs(input, 3);
        const std::vector<unsigned int> indices = fuzz::takeIndices(input, 20);
        const std::vector<unsigned int> counts = fuzz::takeIndices(input, 4);
        mesh->addPrimitive(boost::make_shared<PolygonMeshPrimitive>(mesh, inputs, indices, counts));
    }
    readAll(mesh);
    pick(input, mesh);
    for (unsigned int steps = 0; steps < 12 && !input.isEmpty(); ++steps)
    {
        switch (input.below(5))
        {
        case 0:
            mesh->recalculateVertexNormals();
            break;
        case 1:
            if (fuzz::countFaces(*mesh) < 40)
            {
                mesh->subDivide(ControllerPtr());
            }
            break;
        case 2:
            addTriangle(input, mesh);
            break;
        case 3:
            pick(input, mesh);
            break;
        default:
            mesh->calculateBV();
        }
        readAll(mesh);
    }
    mesh->clearPrimitives();
    return 0;
}
