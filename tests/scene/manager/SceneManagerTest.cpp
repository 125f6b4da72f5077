#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Evaluator.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Camera.h"
#include "scene/graph/CameraInstance.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Light.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"
#include "tests/scene/SceneUnderTest.h"

#include <cmath>

namespace velmoran::scene
{
namespace
{
ImagePtr makeImage(const char* id, const char* file)
{
    return boost::make_shared<Image>(id, file, "");
}

class ManagedScene : public testing::Test
{
protected:
    SceneUnderTest scene;
    SceneManager& manager = *scene.manager;
};
} // namespace

TEST(SceneManager, StartsWithItsDefaults)
{
    const auto eventManager = boost::make_shared<core::event::EventManager>();
    EventRecorder events(eventManager);
    const auto scene = boost::make_shared<SceneManager>(eventManager);
    EXPECT_THAT(events.take(), ElementsAre("SceneUpdate:MaterialList"));
    EXPECT_EQ(scene->effectLibraryToString(),
              "EffectLibrary: (effectID, filename)\ndefaultEffect, default.cgfx\n");
    EXPECT_EQ(scene->materialLibraryToString(),
              "Material ID: defaultMaterial, Effect ID: defaultEffect\n\n");
    EXPECT_EQ(scene->getSceneName() + scene->getSceneID(), "DefaultScenedefaultSceneID");
    EXPECT_EQ(scene->getUpAxis(), Y_UP);
    EXPECT_EQ(scene->getGeometryManager()->getEventManager(), nullptr);
    scene->setEventManager(eventManager);
    EXPECT_EQ(scene->getGeometryManager()->getEventManager(), eventManager);
    for (const float ignored : {-1.0F, std::nanf("")})
    {
        scene->setMeterUnit(ignored);
        EXPECT_EQ(scene->getMeterUnit(), 1.0F);
    }
    scene->setMeterUnit(0.0F);
    EXPECT_EQ(scene->getMeterUnit(), 0.0F);
}

TEST_F(ManagedScene, GeneratesIdentifiersThatNobodyUses)
{
    EXPECT_EQ(manager.generateID(), "OID0");
    manager.addID("xOID1");
    manager.addID("OI");
    EXPECT_EQ(manager.generateID(), "OID1");
    manager.setSceneID("OID2");
    scene.makeNode("OID3")->setSID("OID4");
    manager.setImageLibrary({makeImage("OID5", "f"), ImagePtr()});
    manager.addLight(boost::make_shared<Light>(scene.manager, Light::POINT, "OID6", ""));
    const auto geometry = boost::make_shared<GeometryManager>(core::event::EventManagerPtr());
    geometry->addGeometry(boost::make_shared<Mesh>("OID7", ""));
    manager.setGeometryManager(geometry);
    manager.setGeometryManager(GeometryManagerPtr());
    scene.eventManager->triggerEvent("L_NewEffect", "x,OID8,file");
    scene.eventManager->triggerEvent("L_NewMaterial", "x,OID9,fx");
    manager.mergeImageLibrary({makeImage("OID10", "f")}, false);
    EXPECT_EQ(manager.generateID(), "OID11");
    EXPECT_EQ(geometry->getEventManager(), scene.eventManager);
}

TEST_F(ManagedScene, KeepsImagesApartByTheirIdentifiers)
{
    manager.addImage(makeImage("sky", "sky.png"));
    manager.addImage(makeImage("sky", "sky.png")); // discarded
    const ImagePtr other = makeImage("sky", "night.png");
    manager.addImage(other);
    EXPECT_EQ(other->getID(), "OID0");
    EXPECT_EQ(manager.getImageByFilename("night.png"), other);
    EXPECT_EQ(manager.getImageAt(2), nullptr);
    EXPECT_THAT(scene.events.take(), ElementsAre("SceneUpdate", "SceneUpdate"));

    const ImagePtr surrounding = makeImage("dome", "dome.png");
    manager.setSurrounding(surrounding);
    manager.setSurrounding(surrounding);
    EXPECT_EQ(manager.getImageCount(), 3U);
    EXPECT_EQ(manager.getSurrounding(), surrounding);
    manager.setSurrounding(ImagePtr());
    EXPECT_EQ(manager.getSurrounding(), nullptr);
    EXPECT_THAT(scene.events.take(),
                ElementsAre("SceneUpdate", "SceneSurroundingUpdate", "SceneSurroundingUpdate",
                            "SceneSurroundingUpdate"));
}

TEST_F(ManagedScene, RemovesAnEffectWithTheMaterialsThatUseIt)
{
    manager.addMaterial(boost::make_shared<Material>("kept", "otherEffect"));
    scene.events.take();
    manager.removeEffect(manager.getEffectByID("defaultEffect"));
    manager.removeEffect(EffectPtr());
    EXPECT_THAT(manager.getEffectLibrary(), IsEmpty());
    ASSERT_EQ(manager.getMaterialList().size(), 1U);
    EXPECT_EQ(manager.getMaterialList()[0]->getMaterialID(), "kept");
    EXPECT_THAT(scene.events.take(), IsEmpty());
}

TEST_F(ManagedScene, EditsMaterialsByEvents)
{
    const auto raise = [&](const char* type, const char* data)
    {
        scene.events.take();
        scene.eventManager->triggerEvent(type, data);
        return scene.events.take();
    };
    EXPECT_THAT(raise("L_NewEffect", "x,fx,fx.cgfx"), IsEmpty());
    EXPECT_EQ(manager.getEffectByFilename("fx.cgfx")->getID(), "fx");
    EXPECT_THAT(raise("L_NewMaterial", "x,red,fx"), ElementsAre("SceneUpdate:MaterialList"));
    for (const char* const incomplete : {"x,red", "x,,fx", ""})
    {
        EXPECT_THAT(raise("L_NewMaterial", incomplete), IsEmpty());
    }
    EXPECT_EQ(manager.getMaterialList().size(), 2U);

    const char* const parameter = "L_MaterialParameterUpdated";
    EXPECT_THAT(raise(parameter, "x,red,shine,3,float"), ElementsAre("SceneUpdate"));
    EXPECT_THAT(raise(parameter, "x,red,shine,,float"), IsEmpty());
    EXPECT_THAT(raise(parameter, "x,none,shine,3,float"), IsEmpty());
    EXPECT_THAT(raise(parameter, "x,red,map,a.png,texture"),
                ElementsAre("SceneUpdate", "SceneUpdate"));
    EXPECT_THAT(raise(parameter, "x,red,bump,a.png,texture"), ElementsAre("SceneUpdate"));
    raise("L_MaterialTechniqueChanged", "x,red,phong");
    raise("L_MaterialTechniqueChanged", "x,none,phong");
    EXPECT_EQ(manager.getMaterialWithID("red")->getTechnique(), "phong");
    raise("L_MaterialTechniqueChanged", "x,red");
    EXPECT_EQ(manager.getMaterialWithID("red")->getTechnique(), "");
    EXPECT_EQ(manager.getMaterialWithID("red")->toString(),
              "Material ID: red, Effect ID: fx\n Param 0: shine, float, 3\n"
              " Param 1: map, texture, OID0\n Param 2: bump, texture, OID0\n");
}

TEST_F(ManagedScene, PlacesCamerasTurnedForTheUpAxis)
{
    manager.setUpAxis(Z_UP);
    scene.events.take();
    EXPECT_EQ(manager.createNewCamera(Camera::PERSPECTIVE, "", "nowhere"), "OID0");
    const CameraInstancePtr instance = manager.getCameraInstanceBySID("OID2");
    ASSERT_NE(instance, nullptr);
    const NodePtr node = manager.getNodeByID("OID1");
    EXPECT_EQ(instance->getParentNode(), node);
    EXPECT_EQ(node->getParent()->getID(), "root");
    EXPECT_EQ(node->getInstanceCamera(0), manager.getCameraByID("OID0"));
    EXPECT_EQ(manager.getCameraAt(0)->getName(), "VMCamera");
    EXPECT_EQ(scene.events.count("SceneNewCamera:OID2"), 1U);
    Eigen::Matrix3f turn; // Y to Z
    turn << 1, 0, 0, 0, 0, -1, 0, 1, 0;
    EXPECT_TRUE(node->getRotation().linear().isApprox(turn, 1e-6F));
    manager.createNewCamera(Camera::ORTHOGRAPHIC, "OID1", "");
    EXPECT_TRUE(node->getRotation().linear().isApprox(turn * turn, 1e-6F));

    manager.setUpAxis(X_UP);
    manager.createNewCamera(Camera::PERSPECTIVE, "eye", "OID1");
    const NodePtr eye = manager.getNodeByID("eye");
    EXPECT_EQ(eye->getParent(), node);
    EXPECT_TRUE((eye->getRotation().linear() * Eigen::Vector3f::UnitX())
                    .isApprox(-Eigen::Vector3f::UnitY(), 1e-6F));
    manager.setUpAxis(Y_UP);
    manager.createNewCamera(Camera::PERSPECTIVE, "straight", "");
    EXPECT_EQ(manager.getNodeByID("straight")->getTransformations(), Eigen::Matrix4f::Identity());
}

TEST_F(ManagedScene, PlacesLightsAndNamesTheirNodes)
{
    const NodePtr lamp = scene.addNode("root", "lamp");
    manager.createNewLight(Light::POINT, "bulb", "lamp", "");
    manager.createNewLight(Light::SPOT, "bulb", "new", "lamp"); // refused, still placed
    EXPECT_EQ(manager.getLightLibrary().size(), 1U);
    EXPECT_EQ(lamp->getName(), "bulb");
    ASSERT_EQ(lamp->getChildCount(), 1U);
    EXPECT_EQ(lamp->getChildNode(0)->getInstanceLight(0)->getLightType(), int(Light::SPOT));
    EXPECT_NE(lamp->getChildNode(0)->getID(), "new");
    EXPECT_FALSE(manager.addLight(LightPtr()));

    SceneManager unowned{core::event::EventManagerPtr()};
    EXPECT_THROW(unowned.createNewCamera(0, "", ""), boost::bad_weak_ptr);
    EXPECT_THROW(unowned.createNewLight(0, "l", "", ""), boost::bad_weak_ptr);
    EXPECT_EQ(unowned.getCameraCount() + unowned.getLightLibrary().size(), 0U);
}

TEST_F(ManagedScene, TakesAnimationsOutByTheirPlaceWhileTheyArePlayed)
{
    const auto first = boost::make_shared<Animation>("a", "");
    const auto second = boost::make_shared<Animation>("b", "");
    manager.setAnimationsLibrary({first, second});
    manager.getAnimationManager()->setAnimation(first);
    manager.removeAnimation(2);
    manager.removeAnimation(0);
    EXPECT_THAT(manager.getAnimationsLibrary(), ElementsAre(second));
    EXPECT_EQ(manager.getAnimationManager()->getAnimation(), first);
}

TEST_F(ManagedScene, KeepsEvaluatorsInTheirOrder)
{
    const auto first = boost::make_shared<Evaluator>();
    const auto second = boost::make_shared<Evaluator>();
    for (const EvaluatorPtr& evaluator : {first, second, first, EvaluatorPtr()})
    {
        manager.addEvaluator(evaluator);
    }
    manager.removeEvaluator(first);
    manager.removeEvaluator(EvaluatorPtr());
    ASSERT_EQ(manager.getEvaluatorsCount(), 2U);
    EXPECT_EQ(manager.getEvaluatorAt(0), second);
    EXPECT_EQ(manager.getEvaluatorAt(1), first);
    EXPECT_EQ(manager.getEvaluatorAt(2), nullptr);
}

TEST(SceneManager, FreesEverythingWithTheLastHandle)
{
    const auto eventManager = boost::make_shared<core::event::EventManager>();
    SceneManagerPtr scene = boost::make_shared<SceneManager>(eventManager);
    scene->createNewCamera(Camera::PERSPECTIVE, "eye", "");
    const boost::weak_ptr<SceneManager> watchScene = scene;
    const boost::weak_ptr<Node> watchNode = scene->getNodeByID("eye");
    const NodePtr kept = boost::make_shared<Node>(scene);
    scene->getRoot()->addNode(kept);
    scene.reset();
    EXPECT_TRUE(watchScene.expired());
    EXPECT_TRUE(watchNode.expired());
    EXPECT_EQ(kept->getParent(), nullptr);
    eventManager->triggerEvent("L_NewEffect", "x,fx,file");
}
} // namespace velmoran::scene
