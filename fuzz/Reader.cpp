// Documents of any bytes: refused with one line, or read into a scene that can be used.

#include "core/event/EventManager.h"
#include "examples/collada/ColladaReader.h"
#include "fuzz/Input.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <tuple>

using namespace velmoran;
using fuzz::check;

namespace
{
/// All that a scene holds.
auto contentsOf(const scene::SceneManager& scene)
{
    std::vector<scene::CameraPtr> cameras;
    for (unsigned int i = 0; i < scene.getCameraCount(); ++i)
    {
        cameras.push_back(scene.getCameraAt(i));
    }
    return std::make_tuple(scene.getNodeArray(), scene.getImageLibrary(), scene.getEffectLibrary(),
                           scene.getMaterialList(), scene.getLightLibrary(),
                           scene.getControllersLibrary(), scene.getAnimationsLibrary(),
                           scene.getPhysicsSceneLibrary(), scene.getInstancedPhysicsScenes(),
                           scene.getPhysicsMaterialLibrary(), scene.getPhysicsModelLibrary(),
                           cameras, scene.getCameraInstanceCount(), scene.getGeometryManager(),
                           scene.getGeometryManager()->getIDs(), scene.getSceneID(),
                           scene.getSceneName(), scene.getMeterUnit(), scene.getUpAxis(),
                           scene.getAnimationManager(), scene.getSurrounding());
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto scene = boost::make_shared<scene::SceneManager>(core::event::EventManagerPtr());
    scene->getRoot()->addNode(boost::make_shared<scene::Node>(scene));
    const auto before = contentsOf(*scene);
    const std::string text(reinterpret_cast<const char*>(data), size);
    const examples::ReadResult result = examples::ColladaReader().readText(text, "fuzz", scene);
    check(result.ok == result.error.empty(), "an error is told exactly when reading fails");
    check(result.error.find('\n') == std::string::npos, "an error is one line");
    if (!result.ok)
    {
        check(contentsOf(*scene) == before, "a refused document changes nothing");
        check(scene->getLayerManager()->getLayerName(6).empty(), "it adds no layer either");
    }
    scene->getRoot()->getBVMax();
    scene->getNodeArray();
    return 0;
}
