#include "scene/deform/InstanceController.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Light.h"
#include "scene/graph/TransformationLookAt.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/graph/TransformationRotate.h"
#include "scene/graph/TransformationScale.h"
#include "scene/graph/TransformationTranslate.h"
#include "scene/material/Material.h"
#include "tests/scene/SceneUnderTest.h"
#include "tests/scene/geometry/GeometryBuilders.h"

#include <cmath>

namespace velmoran::scene
{
namespace
{
using Vec3 = core::utils::Vector<float, 3>;

const char* const IDENTITY = "1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1";

Eigen::Matrix3f turnAboutZ(float degrees)
{
    return Eigen::AngleAxisf(degrees * 0.017453292F, Eigen::Vector3f::UnitZ()).toRotationMatrix();
}

class NodeTree : public testing::Test
{
protected:
    SceneUnderTest scene;
    NodePtr root = scene.manager->getRoot();
};
} // namespace

TEST_F(NodeTree, AnnouncesAChildAfterItsTransformation)
{
    scene.addNode("root", "arm");
    EXPECT_THAT(scene.events.take(),
                ElementsAre("NodeTransformationUpdate:arm," + std::string(IDENTITY), "SceneUpdate",
                            "SceneTopologyUpdate:NodeAdded,root,arm"));
    EXPECT_EQ(root->getChildNode(0)->getParent(), root);
    EXPECT_EQ(root->getChildNode(1), nullptr);

    const NodePtr arm = root->getChildNode(0);
    root->removeChild(arm);
    EXPECT_EQ(arm->getParent(), nullptr);
    root->removeChild(arm);
    root->removeChild(NodePtr());
    EXPECT_THAT(scene.events.take(), ElementsAre("SceneTopologyUpdate:NodeRemoved,root,arm",
                                                 "SceneTopologyUpdate:NodeRemoved,root,arm"));
}

TEST_F(NodeTree, RefusesEmptyChildrenCyclesAndNodesWithoutScene)
{
    const NodePtr arm = scene.addNode("root", "arm");
    const NodePtr hand = scene.addNode("arm", "hand");
    const NodePtr side = scene.addNode("root", "side");
    side->addNode(hand); // a second parent: arm is no longer on the way up by parent links
    hand->addNode(arm);
    hand->addNode(root);
    hand->addNode(hand);
    root->addNode(NodePtr());
    EXPECT_EQ(hand->getChildCount(), 0U);
    EXPECT_EQ(hand->getParent(), side);
    EXPECT_THAT(idsOf(scene.manager->getNodeArray()), ElementsAre("root", "arm", "hand", "side"));

    const NodePtr kept = scene.makeNode("kept");
    scene.manager.reset();
    scene.events.take();
    kept->addNode(boost::make_shared<Node>(SceneManagerPtr()));
    kept->setID("OID1");
    kept->move(1, 2, 3);
    kept->addToLayer("nowhere");
    EXPECT_EQ(kept->getChildCount(), 0U);
    EXPECT_EQ(kept->getLayerName(0), "");
    EXPECT_THAT(scene.events.take(), IsEmpty());
}

TEST_F(NodeTree, IsSearchedFirstMatchFirst)
{
    scene.addNode("root", "a")->setName("twin");
    scene.addNode("a", "same");
    const NodePtr first = scene.addNode("a", "b");
    first->setName("twin");
    scene.addNode("root", "same")->setName("late");
    for (int round = 0; round < 3; ++round)
    {
        EXPECT_EQ(scene.manager->getNodeByID("same")->getParent()->getID(), "a");
    }
    EXPECT_EQ(scene.manager->getNodeByName("twin")->getID(), "a");
    EXPECT_EQ(scene.manager->getNodeByID("same", first), nullptr);
    EXPECT_EQ(scene.manager->getNodeByName("twin", first), first);
    EXPECT_EQ(scene.manager->getNodeByID("same", NodePtr()), nullptr);

    scene.manager->removeNodeByID("twin"); // by name
    EXPECT_EQ(scene.manager->getNodeByID("same")->getName(), "late");
    EXPECT_EQ(scene.manager->getNodeByID("b"), nullptr);
    scene.manager->setRoot(NodePtr());
    EXPECT_EQ(scene.manager->getNodeByID("same"), nullptr);
    EXPECT_THAT(scene.manager->getNodeArray(), IsEmpty());
}

TEST_F(NodeTree, FindsWhatAnyChangeMadeOfAnIndexedTree)
{
    SceneManagerPtr other = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    const NodePtr foreign = boost::make_shared<Node>(other);
    foreign->setID("foreign");
    root->addNode(foreign);
    const auto find = [&](const char* id)
    {
        scene.manager->getNodeByID(id); // twice, so that the index is used
        return scene.manager->getNodeByID(id);
    };
    EXPECT_EQ(find("foreign"), foreign);
    foreign->setID("renamed");
    EXPECT_EQ(find("renamed"), foreign);
    other.reset();
    foreign->setID("orphan");
    EXPECT_EQ(find("renamed"), nullptr);
    EXPECT_EQ(find("orphan"), foreign);
    const NodePtr child = scene.addNode("root", "child");
    EXPECT_EQ(find("child"), child);
    scene.manager->removeNode(child);
    EXPECT_EQ(find("child"), nullptr);
}

TEST_F(NodeTree, SurvivesAHundredThousandLevelsAndChildren)
{
    const unsigned int count = 100000;
    scene.events.setEventManager(core::event::EventManagerPtr());
    NodePtr deepest = root;
    for (unsigned int i = 0; i < count; ++i)
    {
        const NodePtr node = boost::make_shared<Node>(scene.manager);
        deepest->addNode(node);
        deepest = node;
        root->addNode(boost::make_shared<Node>(scene.manager));
    }
    deepest->setID("deepest");
    root->getChildNode(0)->addTranslation(0, 0, 2);
    EXPECT_EQ(scene.manager->getNodeArray().size(), 2 * count + 1);
    EXPECT_EQ(scene.manager->getNodeByID("deepest"), deepest);
    EXPECT_EQ(deepest->getCombinedTransformations()(2, 3), 2.0F);
    EXPECT_EQ(root->getCombinedTransformationsBelow().at(count)(2, 3), 2.0F);
    EXPECT_EQ(deepest->getCombinedRotations().linear(), Eigen::Matrix3f::Identity());

    // Built from the bottom, and one half kept beyond its parent.
    NodePtr top = boost::make_shared<Node>(scene.manager);
    NodePtr middle;
    for (unsigned int i = 0; i < count; ++i)
    {
        const NodePtr above = boost::make_shared<Node>(scene.manager);
        above->addNode(top);
        top = above;
        middle = i == count / 2 ? top : middle;
    }
    top.reset();
    EXPECT_EQ(middle->getParent(), nullptr);
    EXPECT_EQ(middle->getNodesBelow().size(), count / 2 + 2);
}

TEST_F(NodeTree, MovesTurnsAndScalesInItsOwnFrame)
{
    root->setScale(Eigen::Vector3f(2, 2, 2));
    root->scale(Eigen::Vector3f(2, 3, 4)); // replaces
    root->rotate(turnAboutZ(90) * Eigen::Vector3f(5, 1, 1).asDiagonal());
    root->move(1, 0, 0); // R turns x to y, S stretches y by 3
    EXPECT_TRUE(root->getTranslation().vector().isApprox(Eigen::Vector3f(0, 3, 0)));
    EXPECT_TRUE(root->getRotation().linear().isApprox(turnAboutZ(90)));
    Eigen::Matrix4f local;
    // columns: R's columns times the scale of their position
    local << 0, -3, 0, 0, 2, 0, 0, 3, 0, 0, 4, 0, 0, 0, 0, 1;
    EXPECT_TRUE(root->getTransformations().isApprox(local, 1e-6F));
    EXPECT_EQ(scene.events.count("NodeTransformationUpdate:root,"), 4U);
    EXPECT_EQ(scene.events.count("SceneUpdate"), 4U);

    const NodePtr child = scene.addNode("root", "child");
    child->setTranslation(Eigen::Translation3f(1, 0, 0));
    Eigen::Matrix4f turned = Eigen::Matrix4f::Identity();
    turned.block<3, 3>(0, 0) = turnAboutZ(30);
    child->setCombinedRotations(turned);
    EXPECT_TRUE(child->getCombinedRotations().matrix().isApprox(turned, 1e-6F));
    const std::vector<Eigen::Matrix4f> worlds = root->getCombinedTransformationsBelow();
    EXPECT_EQ(worlds.at(1), child->getCombinedTransformations());
    EXPECT_EQ(worlds.at(1),
              Eigen::Matrix4f(root->getTransformations() * child->getTransformations()));
}

TEST_F(NodeTree, FoldsATransformationListInOrderAndKeepsIt)
{
    float matrix[16] = {0, 2, 0, 0, -3, 0, 0, 0, 0, 0, 4, 0, 1, 0, 0, 1}; // turn 90 about z
    const std::vector<ITransformationPtr> list = {
        boost::make_shared<TransformationRotate>(Vec3(0, 0, 1), 90.0F),
        boost::make_shared<TransformationTranslate>(Vec3(1, 0, 0)),
        boost::make_shared<TransformationLookAt>(Vec3(1, 2, 3), Vec3(0, 0, 0), Vec3(0, 1, 0)),
        boost::make_shared<TransformationScale>(Vec3(1, 5, 1)),
        boost::make_shared<TransformationMatrix>(matrix)};
    const std::size_t pairs[] = {1, 1, 0, 1, 3};
    for (std::size_t i = 0; i < list.size(); ++i)
    {
        scene.events.take();
        root->addTransformation(list[i]);
        EXPECT_EQ(scene.events.count("NodeTransformationUpdate"), pairs[i]) << i;
    }
    root->addTransformation(ITransformationPtr());
    EXPECT_EQ(root->getOriginalTransformations(), list);
    // (0, 1, 0) after the turn; the matrix then steps by S * R * (1, 0, 0) = (0, 5, 0)
    EXPECT_TRUE(root->getTranslation().vector().isApprox(Eigen::Vector3f(0, 6, 0)));
    EXPECT_TRUE(root->getRotation().linear().isApprox(turnAboutZ(180), 1e-5F));
    // M = turn * scaling, so the scaling's diagonal is in the turned-from frame
    EXPECT_TRUE(root->getScale().isApprox(Eigen::Vector3f(2, 3, 4), 1e-5F));
}

TEST_F(NodeTree, SplitsAMatrixWithoutTouchingTheScale)
{
    root->setScale(Eigen::Vector3f(7, 7, 7));
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Zero();
    matrix.block<3, 1>(0, 0) = Eigen::Vector3f(0, 5, 0);
    matrix.block<3, 1>(0, 1) = Eigen::Vector3f(-2, 0, 0);
    matrix.block<3, 1>(0, 3) = Eigen::Vector3f(1, 2, 3);
    root->setTransformations(matrix); // third column of zeros
    EXPECT_EQ(root->getScale(), Eigen::Vector3f(7, 7, 7));
    Eigen::Matrix3f linear;
    linear << 0, -1, 0, 1, 0, 0, 0, 0, 0;
    EXPECT_EQ(root->getRotation().linear(), linear);
    EXPECT_EQ(root->getTranslation().vector(), Eigen::Vector3f(1, 2, 3));

    root->addTransformation(matrix); // turns by the linear part as it is
    EXPECT_EQ(root->getRotation().linear(), Eigen::Matrix3f(linear * matrix.topLeftCorner<3, 3>()));
    EXPECT_EQ(root->getTranslation().vector(), Eigen::Vector3f(2, 4, 6));
    EXPECT_EQ(root->getScale(), Eigen::Vector3f(7, 7, 7));
    matrix.row(3) = Eigen::RowVector4f(1, 1, 1, 2); // no part of a rotation
    root->setRotation(matrix);
    EXPECT_EQ(root->getRotation().linear(), Eigen::Matrix3f(matrix.topLeftCorner<3, 3>()));
    EXPECT_EQ(root->getTransformations().row(3), Eigen::RowVector4f(0, 0, 0, 1));
    EXPECT_EQ(scene.events.count("NodeTransformationUpdate:root,"), 4U);
}

TEST_F(NodeTree, AnnouncesLayersAndLights)
{
    root->setVisible(false);
    root->addToLayer("mine");
    EXPECT_FALSE(root->isVisible());
    EXPECT_TRUE(root->inLayer(6));
    EXPECT_TRUE(root->inLayer("mine"));
    EXPECT_THAT(root->getLayersNames(), ElementsAre("hidden", "mine"));
    root->setVisible(true);
    root->removeFromLayer("mine");
    root->addInstanceLight(boost::make_shared<Light>(scene.manager, Light::POINT, "sun", ""));
    root->addInstanceLight(LightPtr());
    EXPECT_THAT(scene.events.take(),
                ElementsAre("NodeAddedLayer:root,hidden", "NodeAddedLayer:root,mine",
                            "NodeRemovedLayer:root,hidden", "NodeRemovedLayer:root,mine",
                            "NodeAddedLight:root,sun"));
    EXPECT_EQ(root->getInstanceLight(0)->getID(), "sun");
    EXPECT_EQ(root->getInstanceLight(1), nullptr);
    EXPECT_THAT(root->getLayers(), IsEmpty());
}

TEST_F(NodeTree, SetsMaterialsOfPrimitivesByTheirSymbols)
{
    const MeshPtr mesh = makeMeshOf("paint", "cube");
    const auto red = boost::make_shared<Material>("red", "fx");
    const auto instanceOf = [&](const char* symbol)
    {
        return boost::make_shared<InstanceGeometry>(
            mesh, std::map<std::string, MaterialPtr>{{symbol, nullptr}});
    };
    root->addInstanceGeometry(instanceOf("other"));
    root->addInstanceController(
        boost::make_shared<InstanceController>(instanceOf("paint"), ControllerPtr()));
    root->setMaterial(red, 1, 0);
    root->setMaterial(red, 2, 0);
    root->setMaterial(red, 1, 1);
    root->setMaterial(MaterialPtr(), 1, 0);
    EXPECT_THAT(scene.events.take(), ElementsAre("NodeMaterialChanged:root,1,0,red"));
    const auto controlled = root->getInstanceController(0)->getInstanceGeometry();
    EXPECT_EQ(controlled->getMaterial("paint"), red);

    const InstanceGeometryPtr repeated = instanceOf("paint");
    root->addInstanceGeometry(repeated);
    root->addInstanceGeometry(repeated);
    root->removeInstanceGeometry(repeated);
    EXPECT_EQ(root->getInstancedGeometries().size(), 2U);
    EXPECT_EQ(root->getInstancedGeometries().back(), repeated);
    root->removeInstanceGeometry(controlled);
    EXPECT_EQ(root->getInstancedGeometries().size(), 2U);
    mesh->clearPrimitives();
}

TEST_F(NodeTree, KeepsItsTransformDefinedUnderBrokenMatrices)
{
    float broken[16] = {2, 0, 0, 0, 0, std::nanf(""), 0, 0, 0, 0, 3, 0, 0, 0, 0, 1};
    root->addTransformation(boost::make_shared<TransformationMatrix>(broken));
    EXPECT_EQ(root->getRotation().linear(), Eigen::Matrix3f::Identity());
    EXPECT_EQ(root->getScale()[2], 3.0F);
    float tiny[16] = {1e-30F, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1e30F, 0, 0, 0, 0, 1};
    root->setTransformations(Eigen::Matrix4f(Eigen::Map<Eigen::Matrix4f>(tiny)));
    EXPECT_EQ(root->getRotation().linear(), Eigen::Matrix3f::Identity());
}

TEST_F(NodeTree, AHandlerMayDropTheNodeThatIsAnnounced)
{
    core::event::EventBase dropping(scene.eventManager);
    dropping.registerHandler("NodeTransformationUpdate", [this](const core::event::Event&)
                             { root->removeChild(root->getChildNode(0)); });
    root->addNode(scene.makeNode("gone"));
    EXPECT_EQ(root->getChildCount(), 0U);
    EXPECT_EQ(scene.events.log.back(), "SceneTopologyUpdate:NodeAdded,root,gone");
}
} // namespace velmoran::scene
