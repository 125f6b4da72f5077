#include "examples/scenetool/SceneLoader.h"

#include "core/event/EventManager.h"
#include "examples/scenetool/Progress.h"
#include "examples/scenetool/SceneFacts.h"
#include "examples/scenetool/Text.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <ostream>

namespace velmoran::examples
{
LoadedScene loadScene(const std::string& fileName, const core::event::EventManagerPtr& eventManager,
                      const ReadOptions& options)
{
    LoadedScene loaded;
    loaded.fileName = fileName;
    loaded.scene = boost::make_shared<scene::SceneManager>(eventManager);
    ReadResult result = ColladaReader().readFile(fileName, loaded.scene, options);
    if (!result.ok)
    {
        throw CommandError(onOneLine(result.error));
    }
    loaded.warnings = std::move(result.warnings);
    return loaded;
}

LoadedScene openScene(const std::string& fileName, const Console& console,
                      const ReadOptions& options)
{
    LoadedScene loaded;
    {
        Progress progress(console.errIsTerminal ? &console.err : nullptr);
        progress.setTask("Reading " + onOneLine(fileName));
        loaded = loadScene(fileName, boost::make_shared<core::event::EventManager>(), options);
    }
    printWarnings(loaded, console.err);
    return loaded;
}

void warnAboutUnits(const LoadedScene& base, const LoadedScene& other, const Console& console)
{
    const auto describe = [](const scene::SceneManagerPtr& scene)
    { return upAxisText(scene) + " and " + floatText(scene->getMeterUnit()) + " m a unit"; };
    if (describe(base.scene) != describe(other.scene))
    {
        warn(other.fileName + " has " + describe(other.scene) + ", the base " +
                 describe(base.scene) + "; nothing is converted",
             console);
    }
}

void printWarnings(const LoadedScene& loaded, std::ostream& err)
{
    constexpr std::size_t MAX_WARNINGS = 10;
    const std::size_t shown = std::min(loaded.warnings.size(), MAX_WARNINGS);
    for (std::size_t i = 0; i < shown; ++i)
    {
        err << "scenetool: warning: " << onOneLine(loaded.warnings[i]) << '\n';
    }
    if (loaded.warnings.size() > shown)
    {
        err << "scenetool: warning: ... and " << loaded.warnings.size() - shown
            << " more warnings about " << loaded.fileName << '\n';
    }
}
} // namespace velmoran::examples
