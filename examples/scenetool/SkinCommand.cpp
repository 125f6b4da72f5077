#include "examples/scenetool/SkinCommand.h"

#include "examples/scenetool/Channels.h"
#include "examples/scenetool/ObjOutput.h"
#include "examples/scenetool/PngFile.h"
#include "examples/scenetool/SceneLoader.h"
#include "examples/scenetool/ScenePlayer.h"
#include "examples/scenetool/SkinFacts.h"
#include "examples/scenetool/Text.h"
#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/manager/SceneManager.h"

#include <cmath>
#include <filesystem>

namespace velmoran::examples
{
namespace
{
std::vector<SkinInstance> requireSkins(const LoadedScene& loaded)
{
    const std::string file = onOneLine(loaded.fileName);
    if (loaded.scene->getControllersLibrary().empty())
    {
        throw CommandError(file + " holds no controller");
    }
    const std::vector<SkinInstance> skins = findSkins(loaded.scene);
    if (skins.empty())
    {
        throw CommandError("no node in the scene of " + file + " has a skin");
    }
    return skins;
}

/// Poses the scene as its animations have it.
void showTime(const LoadedScene& loaded, double seconds)
{
    const scene::AnimationPtr animation = joinAnimations(*loaded.scene);
    if (!animation)
    {
        throw CommandError(onOneLine(loaded.fileName) + " holds no animation");
    }
    ScenePlayer player(loaded.scene, animation);
    const auto end = static_cast<double>(player.getDuration().total_milliseconds()) / 1e3;
    // Durations are whole milliseconds.
    if (seconds >= end + 0.001)
    {
        throw CommandError("--time " + shortNumber(seconds) + ": the animation ends at " +
                           shortNumber(end) + " s");
    }
    player.show(boost::posix_time::microseconds(std::llround(seconds * 1e6)));
}

void warnAboutJoints(const SkinFacts& facts, const Console& console)
{
    const std::size_t missing = countMissingJoints(facts);
    if (missing > 0)
    {
        warn(std::to_string(missing) + " of " + countText(facts.joints.size(), "joint", "joints") +
                 " of the skin " + quoted(facts.skin.instance->getController()->getID()) +
                 " are not in the scene; their influences are left out",
             console);
    }
}

void writeJson(const SkinOptions& options, const std::vector<SkinFacts>& skins, std::ostream& out)
{
    Json list = Json::array();
    for (const SkinFacts& facts : skins)
    {
        list.push_back(collectSkin(facts, options.time));
    }
    const Json json = {{"file", std::filesystem::path(options.fileName).filename().string()},
                       {"skinned", std::move(list)}};
    // Documents may hold identifiers that are not UTF-8.
    out << json.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}
} // namespace

void runSkin(const SkinOptions& options, const Console& console)
{
    const LoadedScene loaded = openScene(options.fileName, console);
    const std::vector<SkinInstance> skins = requireSkins(loaded);
    if (options.time)
    {
        showTime(loaded, *options.time);
    }
    std::vector<SkinFacts> all;
    for (const SkinInstance& skin : skins)
    {
        all.push_back(takeSkinFacts(loaded.scene, skin));
        warnAboutJoints(all.back(), console);
    }
    if (options.asJson)
    {
        writeJson(options, all, console.out);
        return;
    }
    console.out << onOneLine(options.fileName)
                << (options.time ? ", " + shortNumber(*options.time) + " s" : ", at rest") << '\n';
    for (const SkinFacts& facts : all)
    {
        printSkin(facts, console.out);
    }
    if (!options.objFile.empty())
    {
        writeObjFile(loaded.scene, options.objFile, console);
    }
    if (!options.pngFile.empty())
    {
        Picture picture;
        picture.add(loaded.scene);
        writePngFile(picture, options.pngFile, console);
    }
}
} // namespace velmoran::examples
