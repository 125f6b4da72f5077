#include "examples/scenetool/MergeCommand.h"

#include "core/event/EventManager.h"
#include "examples/scenetool/DeferredOutput.h"
#include "examples/scenetool/EventPrinter.h"
#include "examples/scenetool/MergeReport.h"
#include "examples/scenetool/ObjOutput.h"
#include "examples/scenetool/Progress.h"
#include "examples/scenetool/SceneFacts.h"
#include "examples/scenetool/SceneLoader.h"
#include "examples/scenetool/Text.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

namespace velmoran::examples
{
namespace
{
using scene::SceneManager;
using scene::SceneManagerPtr;

bool joinsNodes(int flags)
{
    return (flags & SceneManager::MERGE_REPEATED_NODES) != 0 &&
           (flags & SceneManager::DISCARD_REPEATED_NODES) == 0;
}

void mergeOne(const LoadedScene& base, const LoadedScene& file, const MergeOptions& options,
              const Console& console)
{
    const scene::NodePtr wanted = base.scene->getNodeByID(options.parentID);
    const scene::NodePtr parent =
        wanted && !options.parentID.empty() ? wanted : base.scene->getRoot();
    const MergeReport report(base.scene, file.scene);
    console.out << "Merging " << onOneLine(file.fileName) << " under " << quoted(parent->getID())
                << ", flags " << options.flags << '\n';
    const EventPrinter events(base.scene->getEventManager(),
                              options.printsEvents ? &console.out : nullptr, console.outIsTerminal);
    {
        const scene::SceneLock lock(base.scene);
        base.scene->mergeSceneManager(file.scene, options.flags, parent->getID());
    }
    report.print(joinsNodes(options.flags), console.out);
    console.out << "  events      " << events.summary() << '\n';
}

/// All documents, the base first.
std::vector<LoadedScene> loadAll(const MergeOptions& options, Progress& progress)
{
    const auto load = [&](const std::string& file, const core::event::EventManagerPtr& events)
    {
        progress.setTask("Reading " + onOneLine(file));
        return loadScene(file, events);
    };
    std::vector<LoadedScene> scenes;
    scenes.push_back(load(options.base, boost::make_shared<core::event::EventManager>()));
    for (const std::string& file : options.files)
    {
        scenes.push_back(load(file, {}));
    }
    return scenes;
}
} // namespace

void runMerge(const MergeOptions& options, const Console& console)
{
    const DeferredOutput output(console, !options.printsEvents);
    Progress progress(console.errIsTerminal && !options.printsEvents ? &console.err : nullptr);
    const std::vector<LoadedScene> scenes = loadAll(options, progress);
    const LoadedScene& base = scenes.front();
    for (const LoadedScene& loaded : scenes)
    {
        printWarnings(loaded, output.getConsole().err);
    }
    if (!options.parentID.empty() && !base.scene->getNodeByID(options.parentID))
    {
        warn("no node " + quoted(options.parentID) + " in " + options.base +
                 "; merging under the root",
             output.getConsole());
    }
    for (std::size_t i = 1; i < scenes.size(); ++i)
    {
        progress.setTask("Merging " + onOneLine(scenes[i].fileName));
        warnAboutUnits(base, scenes[i], output.getConsole());
        mergeOne(base, scenes[i], options, output.getConsole());
    }
    if (!options.objFile.empty())
    {
        progress.setTask("Writing " + onOneLine(options.objFile));
        writeObjFile(base.scene, options.objFile, output.getConsole());
    }
}
} // namespace velmoran::examples
