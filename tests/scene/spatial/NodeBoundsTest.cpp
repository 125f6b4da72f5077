#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/geometry/InstanceGeometry.h"
#include "tests/scene/SceneUnderTest.h"
#include "tests/scene/geometry/GeometryBuilders.h"

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3f;

/// An instance of a geometry whose bounds are the two corners.
InstanceGeometryPtr makeBox(const Vector3f& low, const Vector3f& high)
{
    const auto mesh = boost::make_shared<Mesh>("box", "");
    const StreamPtr corners =
        makeStream("p", 3, {low.x(), low.y(), low.z(), high.x(), high.y(), high.z()});
    mesh->addVerticesMapping(StreamMapping(POSITION, corners, 0));
    return boost::make_shared<InstanceGeometry>(mesh, MaterialPtr());
}

TEST(NodeBounds, TakeOneCornerThroughTheWorldMatrix)
{
    const SceneUnderTest scene;
    const NodePtr node = scene.addNode("root", "turned");
    node->addInstanceGeometry(makeBox(Vector3f(0, 0, 0), Vector3f(1, 1, 1)));
    node->rotate(Eigen::AngleAxisf(1.57079633F, Vector3f::UnitZ()).toRotationMatrix());
    EXPECT_TRUE(node->getBVMax().isApprox(Vector3f(-1, 1, 1), 1e-6F));
    EXPECT_TRUE(node->getBVMin().isZero(1e-6F));
    scene.manager->getRoot()->move(10, 0, 0);
    EXPECT_TRUE(node->getBVCenter().isApprox(Vector3f(9.5F, 0.5F, 0.5F), 1e-6F));
}

TEST(NodeBounds, CombineAllGeometriesBelowAndSkipNodesWithout)
{
    const SceneUnderTest scene;
    const NodePtr root = scene.manager->getRoot();
    const NodePtr empty = scene.addNode("root", "empty");
    EXPECT_EQ(root->getBVMax(), Vector3f(0, 0, 0));
    EXPECT_EQ(root->getBVCenter(), Vector3f(0, 0, 0));
    const NodePtr lower = scene.addNode("empty", "lower");
    lower->move(0, 0, -5);
    lower->addInstanceGeometry(makeBox(Vector3f(-2, -2, -2), Vector3f(-1, -1, -1)));
    EXPECT_EQ(root->getBVMax(), Vector3f(-1, -1, -6)); // not 0: the empty nodes add nothing
    lower->addInstanceGeometry(boost::make_shared<InstanceGeometry>(IGeometryPtr(), MaterialPtr()));
    lower->addInstanceController(boost::make_shared<InstanceController>(
        makeBox(Vector3f(0, 0, 0), Vector3f(3, 0, 0)), boost::make_shared<Controller>("c", "")));
    lower->addInstanceController(
        boost::make_shared<InstanceController>(InstanceGeometryPtr(), ControllerPtr()));
    EXPECT_EQ(empty->getBVMax(), Vector3f(3, 0, -5));
    EXPECT_EQ(empty->getBVMin(), Vector3f(-2, -2, -7));
}
} // namespace
} // namespace velmoran::scene
