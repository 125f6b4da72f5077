// Loads a triangle into a scene and hears of it.

#include "core/event/EventManager.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <iostream>

using namespace velmoran;
using namespace velmoran::scene;

static_assert(EIGEN_MAX_ALIGN_BYTES == 16, "the library's class layouts");

int main()
{
    const auto events = boost::make_shared<core::event::EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);
    int added = 0;
    scene->registerHandler("SceneTopologyUpdate", [&added](const core::event::Event& event)
                           { added += event.getEventData().getArg(0) == "NodeAdded" ? 1 : 0; });

    const auto mesh = boost::make_shared<Mesh>("mesh", "A triangle");
    const auto triangles =
        boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>());
    std::vector<VertexPtr> corners;
    for (const float x : {0.0F, 1.0F, 2.0F})
    {
        corners.push_back(boost::make_shared<Vertex>());
        corners.back()->setPosition(x, x * x, 0.0F);
    }
    triangles->addTriangle(boost::make_shared<Triangle>(corners[0], corners[1], corners[2]), true);
    mesh->addPrimitive(triangles);
    scene->getGeometryManager()->addGeometry(mesh);

    const auto node = boost::make_shared<Node>(scene);
    node->addInstanceGeometry(boost::make_shared<InstanceGeometry>(mesh, MaterialPtr()));
    scene->getRoot()->addNode(node);
    std::cout << "heard " << added << ", highest " << node->getBVMax().y() << std::endl;
    return added == 1 && node->getBVMax().y() == 4.0F ? 0 : 1;
}
