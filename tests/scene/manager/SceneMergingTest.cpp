#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/TransformationTranslate.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"
#include "tests/scene/SceneLog.h"
#include "tests/scene/SceneUnderTest.h"
#include "tests/scene/geometry/GeometryBuilders.h"

#include <boost/pointer_cast.hpp>

namespace velmoran::scene
{
namespace
{
std::vector<std::string> treeOf(const SceneManagerPtr& scene)
{
    std::vector<std::string> tree;
    for (const NodePtr& node : scene->getNodeArray())
    {
        const NodePtr parent = node->getParent();
        tree.push_back((parent ? parent->getID() : "") + "/" + node->getID());
    }
    return tree;
}

class SceneMerging : public testing::Test
{
protected:
    SceneMerging()
    {
        guest.addNode("root", "body");
        guest.addNode("body", "arm");
    }

    void merge(int flags, const std::string& parent = "")
    {
        scene.manager->mergeSceneManager(incoming, flags, parent);
    }

    SceneUnderTest scene; // both have a root "root"
    SceneUnderTest guest;
    SceneManagerPtr& incoming = guest.manager;
};
} // namespace

TEST_F(SceneMerging, RenamesMergesOrDiscardsRepeatedNodes)
{
    using Flags = SceneManager::MergeFlags;
    incoming->getNodeByID("body")->addNode(guest.addNode("root", "leg"));
    merge(0, "unknown");
    EXPECT_THAT(treeOf(scene.manager),
                ElementsAre("/root", "root/root__renamed_OID0__", "root__renamed_OID0__/body",
                            "body/arm", "body/leg", "root__renamed_OID0__/leg__renamed_OID1__"));

    // "body" is found below the parent; the root is not a child of itself and is renamed.
    scene.manager->setRoot(scene.makeNode("root"));
    scene.addNode("root", "body");
    scene.manager->mergeSceneGraph(scene.manager->getRoot(), incoming->getNodeByID("body"), {}, {},
                                   {}, {}, false, true);
    EXPECT_THAT(treeOf(scene.manager), ElementsAre("/root", "root/body", "body/arm", "body/leg"));
    merge(Flags::MERGE_REPEATED_NODES);
    EXPECT_THAT(treeOf(scene.manager), ElementsAre("/root", "root/body", "body/arm", "body/leg",
                                                   "root/root__renamed_OID2__",
                                                   "root__renamed_OID2__/body__renamed_OID3__",
                                                   "body__renamed_OID3__/arm__renamed_OID4__",
                                                   "body__renamed_OID3__/leg__renamed_OID5__",
                                                   "root__renamed_OID2__/leg__renamed_OID6__"));

    SceneLog log;
    merge(Flags::DISCARD_REPEATED_NODES | Flags::MERGE_REPEATED_NODES, "body");
    EXPECT_EQ(scene.manager->getNodeArray().size(), 9U);
    const std::vector<std::string> lines = log.take();
    EXPECT_EQ(std::count(lines.begin(), lines.end(),
                         "[INFO] Found repeated Node with ID: root. Discarded."),
              1);
    EXPECT_EQ(lines.back(), "[INFO] Found repeated Node with ID: root. Discarded.");
}

TEST_F(SceneMerging, CopiesWhatANodeIsAndLeavesTheIncomingSceneAsItWas)
{
    const NodePtr arm = incoming->getNodeByID("arm");
    arm->setName("Arm");
    arm->setType("JOINT");
    arm->setSID("joint");
    arm->addTransformation(
        boost::make_shared<TransformationTranslate>(core::utils::Vector<float, 3>(1, 2, 3)));
    arm->rotate(Eigen::AngleAxisf(1, Eigen::Vector3f::UnitX()).toRotationMatrix());
    arm->setScale(Eigen::Vector3f(1, 2, 3));
    arm->addToLayer("hidden");
    arm->addToLayer("extra");
    scene.manager->getLayerManager()->addLayer("first"); // so that "extra" gets another ID
    const std::vector<std::string> before = treeOf(incoming);
    merge(0, "root");

    const NodePtr copy = scene.manager->getNodeByID("arm");
    EXPECT_EQ(copy->getName() + copy->getType() + copy->getSID(), "ArmJOINTjoint");
    EXPECT_EQ(copy->getTransformations(), arm->getTransformations());
    EXPECT_EQ(copy->getRotation().matrix(), arm->getRotation().matrix());
    ASSERT_EQ(copy->getOriginalTransformations().size(), 1U);
    EXPECT_NE(copy->getOriginalTransformations()[0], arm->getOriginalTransformations()[0]);
    EXPECT_THAT(copy->getLayersNames(), ElementsAre("extra", "hidden__renamed__"));
    EXPECT_EQ(treeOf(incoming), before);
    EXPECT_THAT(arm->getLayersNames(), ElementsAre("hidden", "extra"));
    incoming.reset();
    copy->addToLayer("visible"); // belongs to this scene now
    EXPECT_EQ(scene.events.count("NodeAddedLayer:arm,visible"), 1U);
}

TEST_F(SceneMerging, AnnouncesEachNodeAndThenTheScene)
{
    scene.events.take();
    merge(SceneManager::DISCARD_REPEATED_NODES);
    EXPECT_EQ(scene.events.count("SceneTopologyUpdate"), 0U);
    incoming->getRoot()->setID("guest");
    merge(0);
    EXPECT_EQ(scene.events.count("SceneTopologyUpdate:NodeAdded,root,guest"), 1U);
    EXPECT_EQ(scene.events.count("SceneTopologyUpdate:NodeAdded,guest,body"), 1U);
    EXPECT_EQ(scene.events.count("SceneTopologyUpdate:NodeAdded,body,arm"), 1U);
    EXPECT_EQ(scene.events.count("NodeTransformationUpdate"), 3U);
    std::vector<std::string> log = scene.events.take();
    log.erase(log.begin(), log.end() - 3);
    EXPECT_THAT(log, ElementsAre("SceneUpdate", "SceneUpdate:MaterialList", "SyncScene"));
}

TEST_F(SceneMerging, StrangeInputLeavesBothScenesWhole)
{
    scene.events.take();
    scene.manager->mergeSceneManager(SceneManagerPtr(), 0, "");
    scene.manager->mergeSceneManager(scene.manager, 0, "");
    scene.manager->mergeSceneGraph(NodePtr(), incoming->getRoot(), {}, {}, {}, {}, false, false);
    scene.manager->mergeSceneGraph(scene.manager->getRoot(), NodePtr(), {}, {}, {}, {}, false,
                                   false);
    EXPECT_THAT(scene.events.take(), IsEmpty());

    incoming->setRoot(NodePtr());
    merge(0);
    EXPECT_THAT(treeOf(scene.manager), ElementsAre("/root"));
    EXPECT_THAT(treeOf(incoming), IsEmpty());

    // A subtree merged into itself is copied once, as it was.
    const NodePtr body = scene.addNode("root", "body");
    scene.manager->mergeSceneGraph(body, scene.manager->getRoot(), {}, {}, {}, {}, false, false);
    EXPECT_EQ(scene.manager->getNodeArray().size(), 4U);
}

TEST_F(SceneMerging, RepointsInstancesAndMaterials)
{
    const MeshPtr cube = makeMeshOf("a", "cube");
    const auto ball = boost::make_shared<Mesh>("ball", "");
    scene.manager->getGeometryManager()->addGeometry(boost::make_shared<Mesh>("cube", ""));
    incoming->getGeometryManager()->addGeometry(cube);
    incoming->getGeometryManager()->addGeometry(ball);
    const auto lost = boost::make_shared<Mesh>("lost", "");
    scene.manager->addEffect(boost::make_shared<Effect>("fx", "a.fx", ""));
    incoming->addEffect(boost::make_shared<Effect>("fx", "b.fx", ""));
    scene.manager->addImage(boost::make_shared<Image>("img", "a.png", ""));
    incoming->addImage(boost::make_shared<Image>("img", "b.png", ""));
    scene.manager->addMaterial(boost::make_shared<Material>("red", "fx"));
    const auto red = boost::make_shared<Material>("red", "fx");
    red->setTechnique("phong");
    red->addMaterialParameter(boost::make_shared<MaterialParameter>("map", "texture", "img"));
    red->addMaterialParameter(boost::make_shared<MaterialParameter>("note", "string", "img"));
    incoming->addMaterial(red);
    const auto stray = boost::make_shared<Material>("stray", "fx");
    const NodePtr body = incoming->getNodeByID("body");
    for (const auto& mesh : {cube, lost, ball})
    {
        body->addInstanceGeometry(boost::make_shared<InstanceGeometry>(
            mesh, std::map<std::string, MaterialPtr>{{"a", red}, {"b", stray}, {"c", nullptr}}));
    }

    merge(0);
    const NodePtr copy = scene.manager->getNodeByID("body");
    ASSERT_EQ(copy->getInstanceGeometryCount(), 2U);
    EXPECT_EQ(copy->getInstanceGeometry(0)->getGeometry()->getID(), "cube__renamed__");
    EXPECT_EQ(copy->getInstanceGeometry(1)->getGeometry(), ball);
    const auto clone = boost::dynamic_pointer_cast<Mesh>(
        scene.manager->getGeometryManager()->getGeometry("cube__renamed__"));
    ASSERT_EQ(clone->getPrimitiveCount(), 1U);
    EXPECT_EQ(clone->getPrimitive(0)->getMaterialSymbol(), "a");
    const auto bindings = copy->getInstanceGeometry(0)->getMaterialMap();
    ASSERT_EQ(bindings.size(), 3U);
    EXPECT_EQ(bindings.at("b"), nullptr);
    // The effect was renamed, so the material is another one, too: OID0 and OID1.
    const MaterialPtr merged = bindings.at("a");
    EXPECT_EQ(merged->getMaterialID(), "red__renamed_OID1__");
    EXPECT_EQ(merged->getEffectID(), "fx__renamed_OID0__");
    EXPECT_EQ(merged->getTechnique(), "phong");
    EXPECT_EQ(merged->getParameterByName("map")->getValue(), "img__renamed__");
    EXPECT_EQ(merged->getParameterByName("note")->getValue(), "img");
    EXPECT_EQ(red->getParameterByName("map")->getValue(), "img");
    EXPECT_EQ(scene.manager->getImageByID("img__renamed__")->getFilename(), "b.png");
    EXPECT_EQ(scene.manager->getMaterialList().size(), 3U);
}

TEST_F(SceneMerging, LogsWhatBecameOfEveryLibraryItem)
{
    const auto effect = [](const char* id, const char* file)
    { return boost::make_shared<Effect>(id, file, ""); };
    const auto image = [](const char* id) { return boost::make_shared<Image>(id, "f", ""); };
    const auto material = [](const char* id, const char* fx)
    { return boost::make_shared<Material>(id, fx); };
    scene.manager->addEffect(effect("fx", "a"));
    scene.manager->addImage(image("img"));
    scene.manager->addMaterial(material("red", "fx"));
    SceneLog log;
    // The last image is new: items clash with what the scene holds, not with each other.
    EXPECT_THAT(scene.manager->mergeImageLibrary({image("img"), image("x"), image("x")}, false),
                ElementsAre(std::make_pair("img", "img__renamed__")));
    scene.manager->mergeImageLibrary({image("img"), ImagePtr()}, true);
    EXPECT_THAT(scene.manager->mergeEffectLibrary(
                    {effect("fx", "a"), effect("fx", "b"), effect("new", "a")}),
                ElementsAre(std::make_pair("fx", "fx__renamed_OID0__")));
    scene.events.take();
    EXPECT_THAT(scene.manager->mergeMaterialLibrary(
                    {material("red", "fx"), material("red", "other"), material("blue", "fx")}, {},
                    {}, true),
                ElementsAre(std::make_pair("red", "red__renamed_OID1__")));
    EXPECT_THAT(scene.events.take(), ElementsAre("SceneUpdate:MaterialList"));
    EXPECT_THAT(log.take(),
                ElementsAre("[INFO] Found repeated Image ID. Renamed img to img__renamed__",
                            "[INFO] Added 3 new images.",
                            "[INFO] Found repeated Image ID with same filename. Discarded.",
                            "[INFO] Added 0 new images.",
                            "[INFO] Found repeated Effect ID with same filename. Discarded.",
                            "[INFO] Found repeated Effect ID. Renamed fx to fx__renamed_OID0__",
                            "[INFO] Added 2 new effects.",
                            "[INFO] Found repeated Material ID with same effectID: red. Discarded.",
                            "[INFO] Found repeated Material ID. Renamed red to red__renamed_OID1__",
                            "[INFO] Addded new Material: red__renamed_OID1__",
                            "[INFO] Addded new Material: blue", "[INFO] Added 2 new Materials."));

    const NodePtr body = incoming->getNodeByID("body");
    body->addInstanceGeometry(boost::make_shared<InstanceGeometry>(
        boost::make_shared<Mesh>("lost", ""), std::map<std::string, MaterialPtr>()));
    scene.manager->mergeSceneGraph(scene.manager->getRoot(), body, {}, {}, {}, {}, false, false);
    EXPECT_THAT(log.take(),
                ElementsAre("[ERROR] Trying to instantiate a non existent Geometry: lost"));
}

TEST_F(SceneMerging, AListenerMayDropTheSceneMeanwhile)
{
    core::event::EventBase dropping(scene.eventManager);
    dropping.registerHandler("SceneUpdate",
                             [this](const core::event::Event&) { scene.manager.reset(); });
    const boost::weak_ptr<SceneManager> watch = scene.manager;
    SceneManager& manager = *scene.manager;
    manager.mergeSceneManager(incoming, 0, "");
    EXPECT_TRUE(watch.expired());
}

TEST_F(SceneMerging, CopiesDeepAndSharedSubtrees)
{
    NodePtr deepest = incoming->getNodeByID("arm");
    for (int i = 0; i < 20000; ++i)
    {
        const NodePtr node = boost::make_shared<Node>(incoming);
        deepest->addNode(node);
        deepest = node;
    }
    incoming->getRoot()->addNode(deepest); // below two parents now
    scene.events.setEventManager(core::event::EventManagerPtr());
    merge(0);
    EXPECT_EQ(scene.manager->getNodeArray().size(), 20005U);
    // A subtree that is discarded is not walked, however often its nodes are listed.
    NodePtr level = incoming->getRoot();
    for (int i = 0; i < 60; ++i)
    {
        const NodePtr below = boost::make_shared<Node>(incoming);
        level->addNode(below);
        level->addNode(below);
        level = below;
    }
    merge(SceneManager::DISCARD_REPEATED_NODES);
    EXPECT_EQ(scene.manager->getNodeArray().size(), 20005U);
}

TEST_F(SceneMerging, StaysExactWhenListenersEditTheTreeMeanwhile)
{
    core::event::EventBase meddler(scene.eventManager);
    meddler.registerHandler("SceneTopologyUpdate",
                            [this](const core::event::Event& event)
                            {
                                if (event.getEventData().getArg(2) == "body")
                                {
                                    scene.addNode("root", "arm");
                                }
                            });
    merge(0);
    EXPECT_NE(scene.manager->getNodeByID("arm__renamed_OID1__"), nullptr);
}

TEST_F(SceneMerging, WhatDoesNotReachTheTreeClashesWithNothing)
{
    // A node of a dead scene takes no children: copies below it vanish one by one.
    SceneManagerPtr dead = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    const NodePtr closed = boost::make_shared<Node>(dead);
    dead.reset();
    scene.manager->getRoot()->addNode(closed);
    const NodePtr source = boost::make_shared<Node>(incoming);
    for (const char* const id : {"twice", "other", "twice"})
    {
        source->addNode(guest.makeNode(id));
    }
    SceneLog log;
    scene.manager->mergeSceneGraph(closed, source, {}, {}, {}, {}, false, false);
    EXPECT_EQ(closed->getChildCount(), 0U);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(SceneMerging, AGeometryNamedLikeARenamedOneStaysAsItWas)
{
    scene.manager->getGeometryManager()->addGeometry(makeMeshOf("own", "A"));
    const MeshPtr renamed = makeMeshOf("kept", "A__renamed__");
    for (const MeshPtr& mesh : {makeMeshOf("a", "A"), renamed, makeMeshOf("a", "OID0")})
    {
        incoming->getGeometryManager()->addGeometry(mesh);
    }
    merge(0);
    EXPECT_EQ(renamed->getPrimitive(0)->getMaterialSymbol(), "kept");
    EXPECT_NE(scene.manager->getNodeByID("root__renamed_OID1__"), nullptr); // OID0 is taken
}
} // namespace velmoran::scene
