// First scene: a table with a lamp on it, in a scene of its own.

#include "core/event/EventManager.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <iostream>

using namespace velmoran;
using namespace velmoran::scene;

namespace
{
//! [mesh]
/// A square of two triangles in the plane z = 0, from (-1, -1) to (1, 1).
MeshPtr makeSquare(const std::string& id)
{
    const auto positions = boost::make_shared<Stream>(id + "-positions", 3, false);
    positions->setData({-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0});
    positions->setCount(4);

    const auto mesh = boost::make_shared<Mesh>(id, "Square");
    mesh->addStream(positions);
    mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));

    // The only input is VERTEX, which stands for all streams of the vertices list.
    const std::vector<StreamMapping> inputs = {StreamMapping(VERTEX, StreamPtr(), 0)};
    const std::vector<unsigned int> corners = {0, 1, 2, 0, 2, 3};
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(mesh, inputs, corners));
    mesh->recalculateVertexNormals();
    return mesh;
}
//! [mesh]

//! [node]
NodePtr addNode(const SceneManagerPtr& scene, const NodePtr& parent, const std::string& id)
{
    const auto node = boost::make_shared<Node>(scene);
    node->setID(id);
    parent->addNode(node);
    return node;
}
//! [node]
} // namespace

int main()
{
    //! [scene]
    const auto events = boost::make_shared<core::event::EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);
    //! [scene]

    //! [instance]
    const MeshPtr square = makeSquare("square");
    scene->getGeometryManager()->addGeometry(square);
    const MaterialPtr material = scene->getMaterialWithID("defaultMaterial");

    const NodePtr table = addNode(scene, scene->getRoot(), "table");
    table->addInstanceGeometry(boost::make_shared<InstanceGeometry>(square, material));
    table->setTranslation(Eigen::Translation3f(0.0F, 0.0F, 0.75F)); // in scene units
    //! [instance]

    //! [world]
    const NodePtr lamp = addNode(scene, table, "lamp");
    lamp->setTranslation(Eigen::Translation3f(0.5F, 0.0F, 0.25F));
    const Eigen::Matrix4f world = lamp->getCombinedTransformations();
    std::cout << "lamp at " << world.topRightCorner<3, 1>().transpose() << std::endl;
    std::cout << "scene reaches " << scene->getRoot()->getBVMax().transpose() << std::endl;
    //! [world]
}
