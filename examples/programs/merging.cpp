// Merging: a loaded scene comes into the shown one, where some names are taken.

#include "core/event/EventManager.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"
#include "scene/material/Image.h"

#include <boost/make_shared.hpp>

#include <iostream>

using namespace velmoran;
using namespace velmoran::scene;

namespace
{
/// A scene with a node "chair", a geometry "seat" and an image "wood".
SceneManagerPtr makeScene(const std::string& fileName)
{
    const auto scene = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    const auto chair = boost::make_shared<Node>(scene);
    chair->setID("chair");
    scene->getRoot()->setID("root of " + fileName);
    scene->getRoot()->addNode(chair);
    scene->getGeometryManager()->addGeometry(boost::make_shared<Mesh>("seat", ""));
    scene->addImage(boost::make_shared<Image>("wood", fileName, "Wood"));
    return scene;
}
} // namespace

int main()
{
    const SceneManagerPtr shown = makeScene("oak.png");
    const SceneManagerPtr loaded = makeScene("pine.png");

    //! [merge]
    {
        const SceneLock shownLock(shown); // the workers of both keep out
        const SceneLock loadedLock(loaded);
        shown->mergeSceneManager(loaded, SceneManager::DISCARD_REPEATED_GEOMETRIES, "");
    }
    //! [merge]

    for (const NodePtr& node : shown->getNodeArray())
    {
        std::cout << "node " << node->getID() << std::endl;
    }
    for (const std::string& id : shown->getGeometryManager()->getIDs())
    {
        std::cout << "geometry " << id << std::endl;
    }
    for (const ImagePtr& image : shown->getImageLibrary())
    {
        std::cout << "image " << image->getID() << ": " << image->getFilename() << std::endl;
    }
}
