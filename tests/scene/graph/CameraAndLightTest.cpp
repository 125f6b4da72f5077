#include "core/event/EventBase.h"
#include "core/event/EventManager.h"
#include "scene/graph/Camera.h"
#include "scene/graph/CameraInstance.h"
#include "scene/graph/ISceneContext.h"
#include "scene/graph/Light.h"
#include "scene/graph/Node.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

using namespace velmoran::scene;
using namespace velmoran::core::event;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace
{
class FakeScene : public ISceneContext
{
public:
    EventManagerPtr events = boost::make_shared<EventManager>();
    std::function<void(const Event&)> onEvent;

    EventManagerPtr getEventManager() override { return events; }
    void triggerEvent(Event event) override { onEvent(event); }
    void addID(std::string) override {}
    LayerManagerPtr getLayerManager() override { return LayerManagerPtr(); }
    TreeRevisionPtr getTreeRevision() const override { return TreeRevisionPtr(); }
};

// A camera and a light whose scene notes the events they raise.
class CameraAndLight : public ::testing::Test
{
protected:
    boost::shared_ptr<FakeScene> scene = boost::make_shared<FakeScene>();
    Camera camera{scene, Camera::PERSPECTIVE, "cam", "a camera"};
    Light light{scene, Light::POINT, "lamp", "a light"};
    EventBase listener{scene->events};
    std::vector<std::string> raised;

    CameraAndLight()
    {
        scene->onEvent = [this](const Event& event)
        {
            raised.push_back(event.getEventType().getName() + ":" + event.getEventData().getData() +
                             ":" + event.getSource());
        };
    }

    void listen()
    {
        listener.registerToListen("CameraUpdated");
        listener.registerToListen("LightUpdated");
    }

    std::vector<std::string> raisedBy(const std::function<void()>& set)
    {
        raised.clear();
        set();
        return raised;
    }
};
} // namespace

TEST(Camera, StartsWithTheOpticsOfItsType)
{
    const float optics[][3] = {{45.0F, 0.1F, 10000.0F}, {1.0F, 0.1F, 10000.0F}, {0, 0, 0}};
    for (int type = 0; type < 3; ++type)
    {
        SCOPED_TRACE(type);
        Camera camera(ISceneContextPtr(), type, "id", "name");
        camera.setCameraType(1 - type); // leaves the optics alone
        EXPECT_EQ(camera.getCameraType(), 1 - type);
        EXPECT_EQ(camera.getYFov(), optics[type][0]);
        EXPECT_EQ(camera.getZNear(), optics[type][1]);
        EXPECT_EQ(camera.getZFar(), optics[type][2]);
    }
}

TEST_F(CameraAndLight, EachSetterAnnouncesTheStoredChangeOnceAndTypesAreSetSilently)
{
    listen();
    const auto cameraEvent = ElementsAre("CameraUpdated:cam:");
    EXPECT_THAT(raisedBy([&] { camera.setYFov(30); }), cameraEvent);
    EXPECT_THAT(raisedBy([&] { camera.setZNear(2); }), cameraEvent);
    EXPECT_THAT(raisedBy([&] { camera.setZFar(3); }), cameraEvent);
    EXPECT_THAT(raisedBy([&] { camera.setCameraType(Camera::ORTHOGRAPHIC); }), IsEmpty());

    const auto lightEvent = ElementsAre("LightUpdated:lamp:");
    EXPECT_EQ(light.getColor(), Eigen::Vector3f(1, 1, 1));
    EXPECT_THAT(raisedBy([&] { light.setColor(0.1F, 0.2F, 0.3F); }), lightEvent);
    EXPECT_EQ(light.getColor(), Eigen::Vector3f(0.1F, 0.2F, 0.3F));
    EXPECT_THAT(raisedBy([&] { light.setAttenuation(4, 5, 6); }), lightEvent);
    EXPECT_THAT(raisedBy([&] { light.setFallOff(7, 8); }), lightEvent);
    EXPECT_THAT(raisedBy([&] { light.setLightType(Light::SPOT); }), IsEmpty());
    EXPECT_EQ(light.getLightType(), 3);

    float seen = 0;
    scene->onEvent = [&](const Event&) { seen = light.getQuadraticAttenuation(); };
    light.setAttenuation(1, 2, 3);
    EXPECT_EQ(seen, 3.0F); // the last value is stored before the event
}

TEST_F(CameraAndLight, RaiseNothingWhenNobodyListensOrTheSceneIsGone)
{
    EXPECT_THAT(raisedBy([&] { camera.setYFov(1); }), IsEmpty());
    listen();
    scene->events.reset();
    EXPECT_THAT(raisedBy([&] { light.setColor(0, 0, 0); }), IsEmpty());
    scene.reset();
    EXPECT_THAT(raisedBy([&] { camera.setYFov(3); }), IsEmpty());
    EXPECT_EQ(camera.getYFov(), 3.0F);
}

TEST(CameraInstance, KeepsNeitherNodeNorCameraAlive)
{
    NodePtr node = boost::make_shared<Node>(ISceneContextPtr());
    CameraPtr camera = boost::make_shared<Camera>(ISceneContextPtr(), 0, "cam", "");
    const CameraInstance instance(node, camera, "sid");
    EXPECT_EQ(instance.getParentNode(), node);
    EXPECT_EQ(instance.getCamera(), camera);
    camera.reset();
    EXPECT_FALSE(instance.getCamera());
    node.reset();
    EXPECT_FALSE(instance.getParentNode());
}
