// Documents of any bytes: refused with one line, or read into a scene that can be used.

#include "core/event/EventManager.h"
#include "examples/collada/ColladaReader.h"
#include "fuzz/Input.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

using namespace velmoran;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto scene = boost::make_shared<scene::SceneManager>(core::event::EventManagerPtr());
    const scene::NodePtr root = scene->getRoot();
    const std::string text(reinterpret_cast<const char*>(data), size);
    const examples::ReadResult result = examples::ColladaReader().readText(text, "fuzz", scene);
    check(result.ok == result.error.empty(), "an error is told exactly when reading fails");
    check(result.error.find('\n') == std::string::npos, "an error is one line");
    check(result.ok || scene->getRoot() == root, "a refused document changes nothing");
    scene->getRoot()->getBVMax();
    scene->getNodeArray();
    return 0;
}
