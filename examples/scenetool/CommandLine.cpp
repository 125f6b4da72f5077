#include "examples/scenetool/CommandLine.h"

#include "examples/scenetool/Arguments.h"
#include "examples/scenetool/BoundsArguments.h"
#include "examples/scenetool/InfoCommand.h"
#include "examples/scenetool/KeyArguments.h"
#include "examples/scenetool/MergeCommand.h"
#include "examples/scenetool/MeshArguments.h"
#include "examples/scenetool/MorphArguments.h"
#include "examples/scenetool/PickArguments.h"
#include "examples/scenetool/PlayArguments.h"
#include "examples/scenetool/SceneLoader.h"
#include "examples/scenetool/SkinArguments.h"

#include <functional>
#include <map>
#include <new>

namespace velmoran::examples
{
namespace
{
enum ExitStatus
{
    SUCCESS = 0,
    BAD_INPUT = 1,
    WRONG_USAGE = 2
};

const char* const FLAGS_HELP = R"(How clashing identifiers are resolved: the sum of
   1  discard a repeated geometry instead of renaming it
   2  passed on with the materials; changes nothing
   4  discard a repeated image instead of renaming it
   8  discard a repeated layer instead of renaming it
  16  discard a repeated node and all below it
  32  let the children of a repeated node join the node present
Repeated nodes are renamed without 16 and 32.)";

void addInfo(CLI::App& app, InfoOptions& options)
{
    CLI::App* info = app.add_subcommand("info", "Show what a document holds");
    info->add_option("FILE", options.fileName, "COLLADA document")->required();
    info->add_flag("--json", options.asJson, "Write JSON");
    addReading(*info, options.reading);
}

void addMerge(CLI::App& app, MergeOptions& options)
{
    CLI::App* merge = app.add_subcommand("merge", "Merge documents into one and say what happened");
    merge->add_option("BASE", options.base, "COLLADA document that the others are merged into")
        ->required();
    merge->add_option("FILE", options.files, "COLLADA documents, merged in this order")->required();
    merge->add_option("--flags", options.flags, FLAGS_HELP)
        ->check(CLI::Range(0, 63))
        ->capture_default_str();
    merge->add_option("--parent", options.parentID,
                      "ID of the node to merge under; the root without it");
    merge->add_flag("--events", options.printsEvents, "Print every event, one on a line");
    merge->add_option("--obj", options.objFile,
                      "Write the result in world space as Wavefront OBJ, with the materials' "
                      "diffuse colours in an MTL file beside it");
    merge->callback(
        [&options]
        {
            refuseOverwriting(options.base, options.objFile);
            for (const std::string& file : options.files)
            {
                refuseOverwriting(file, options.objFile);
            }
        });
}

/// Runs the command that was given.
int runCommand(const std::function<void()>& command, const Console& console)
{
    try
    {
        command();
        if (!console.out.flush())
        {
            throw CommandError("can't write to standard output");
        }
        return SUCCESS;
    }
    catch (const CommandError& error)
    {
        console.err << "scenetool: error: " << error.what() << '\n';
    }
    catch (const std::bad_alloc&)
    {
        console.err << "scenetool: error: out of memory\n";
    }
    return BAD_INPUT;
}
} // namespace

int runSceneTool(int argc, const char* const* argv, const Console& console)
{
    CLI::App app("Shows, merges, plays, keys, skins and morphs COLLADA documents, refines their "
                 "meshes and finds what rays meet, with the scene library.",
                 "scenetool");
    app.require_subcommand(1);
    InfoOptions info;
    MergeOptions merge;
    PlayOptions play;
    KeyOptions key;
    SkinOptions skin;
    MorphOptions morph;
    MeshOptions mesh;
    BoundsOptions bounds;
    PickOptions pick;
    addInfo(app, info);
    addMerge(app, merge);
    addPlay(app, play);
    addKey(app, key);
    addSkin(app, skin);
    addMorph(app, morph);
    addMesh(app, mesh);
    addBounds(app, bounds);
    addPick(app, pick);
    const std::map<std::string, std::function<void()>> commands = {
        {"info", [&] { runInfo(info, console); }}, {"merge", [&] { runMerge(merge, console); }},
        {"play", [&] { runPlay(play, console); }}, {"key", [&] { runKey(key, console); }},
        {"skin", [&] { runSkin(skin, console); }}, {"morph", [&] { runMorph(morph, console); }},
        {"mesh", [&] { runMesh(mesh, console); }}, {"bounds", [&] { runBounds(bounds, console); }},
        {"pick", [&] { runPick(pick, console); }},
    };
    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error, console.out, console.err) == 0 ? SUCCESS : WRONG_USAGE;
    }
    return runCommand(commands.at(app.get_subcommands().front()->get_name()), console);
}
} // namespace velmoran::examples
