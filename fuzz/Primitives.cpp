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
    return {x, y, input.number()};
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

void pick(Input& input, const MeshPtr& mesh)
{
    const auto node = boost::make_shared<Node>(SceneManagerPtr());
    node->addInstanceGeometry(boost::make_shared<InstanceGeometry>(mesh, MaterialPtr()));
    Octree octree;
    octree.setSceneNode(node);
    octree.calculate(static_cast<int>(input.below(6)) - 1, static_cast<int>(input.below(4)) - 1);
    const Eigen::Vector3f origin = takePoint(input);
    const auto ray = boost::make_shared<Ray>(origin, takePoint(input));
    check(!octree.intersectRay(ray), "this query finds nothing");
    const auto hit = octree.pickNearest(ray);
    check(!hit || hit->element->intersects(ray), "what is picked is met");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const MeshPtr mesh = fuzz::takeMesh(input, "mesh");
    if (input.flag())
    {
        mesh->addPrimitive(boost::make_shared<PolygonMeshPrimitive>(
            mesh, fuzz::takeInputs(input, 3), fuzz::takeIndices(input, 20),
            fuzz::takeIndices(input, 4)));
    }
    readAll(mesh);
    pick(input, mesh);
    while (!input.isEmpty())
    {
        switch (input.below(4))
        {
        case 0:
            mesh->recalculateVertexNormals();
            break;
        case 1:
            if (mesh->getPrimitiveCount() > 0 && mesh->getPrimitive(0)->getCount() < 1000)
            {
                mesh->subDivide(ControllerPtr());
            }
            break;
        case 2:
        {
            const auto triangles =
                boost::dynamic_pointer_cast<TriangleMeshPrimitive>(mesh->getPrimitive(0));
            const VertexPtr first = takeVertex(input);
            const VertexPtr second = takeVertex(input);
            if (triangles)
            {
                triangles->addTriangle(
                    boost::make_shared<Triangle>(first, second, takeVertex(input)), input.flag());
            }
            break;
        }
        default:
            mesh->calculateBV();
        }
        readAll(mesh);
    }
    mesh->clearPrimitives();
    return 0;
}
