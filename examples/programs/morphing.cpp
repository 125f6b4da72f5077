// Morphing: the avatar of one document is blended halfway into that of another.

#include "core/event/EventManager.h"
#include "examples/collada/ColladaReader.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <iostream>

using namespace velmoran;
using namespace velmoran::scene;

namespace
{
SceneManagerPtr read(const std::string& fileName, const core::event::EventManagerPtr& events)
{
    const auto scene = boost::make_shared<SceneManager>(events);
    const examples::ReadResult result = examples::ColladaReader().readFile(fileName, scene);
    if (!result.ok)
    {
        std::cerr << result.error << std::endl;
        return SceneManagerPtr();
    }
    return scene;
}

float heightOf(const SceneManagerPtr& scene)
{
    const IGeometryPtr body = scene->getGeometryManager()->getGeometry("human-template-lib");
    return (body->getBVMax() - body->getBVMin()).maxCoeff();
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
    {
        std::cerr << "usage: morphing AVATAR TARGET" << std::endl;
        return 2;
    }
    const auto events = boost::make_shared<core::event::EventManager>();
    const SceneManagerPtr avatar = read(argv[1], events);
    const SceneManagerPtr target = read(argv[2], core::event::EventManagerPtr());
    if (!avatar || !target)
    {
        return 1;
    }

    //! [morph]
    core::event::EventBase listener(events);
    listener.registerHandler("DisplayMessageAt", [](const core::event::Event& event)
                             { std::cout << event.getEventData().getData() << std::endl; });
    const float before = heightOf(avatar);
    {
        const SceneLock lock(avatar);
        const SceneLock targetLock(target);
        avatar->morph(target, 2.0F); // refused, which the user is told
        avatar->morph(target, 0.5F);
    }
    //! [morph]
    std::cout << "from " << before << " to " << heightOf(avatar) << ", target " << heightOf(target)
              << std::endl;
}
