#include "examples/scenetool/PlayArguments.h"

namespace velmoran::examples
{
namespace
{
const char* const PLAY_DETAILS =
    R"(Shows the nodes' world matrices at some times, or lets the scene play by itself (--live).
The animations of the document play together and are as long as their last key, cut to
whole milliseconds. At that time, where a playing scene starts over, the last keys are
shown. Behind the last key of its own channels a node stays where the time shown before
has left it.)";

constexpr double MIN_STEP = 0.001; ///< what evaluation tells apart
} // namespace

void addPlay(CLI::App& app, PlayOptions& options)
{
    CLI::App* play = app.add_subcommand("play", "Play the animations of a document");
    play->footer(PLAY_DETAILS);
    play->add_option("FILE", options.fileName, "COLLADA document")->required();
    CLI::Option* from =
        play->add_option("--from", options.from, "First time; the start without it");
    CLI::Option* to = play->add_option("--to", options.to, "Last time; the end without it");
    CLI::Option* step = play->add_option(
        "--step", options.step, "Time between those shown; a quarter of the range without it");
    CLI::Option* node =
        play->add_option("--node", options.nodeIDs,
                         "ID of a node to show, repeatable; all animated nodes without it");
    CLI::Option* live = play->add_option(
        "--live", options.live,
        "Play over and over on the scene's worker thread for so long, and count the events");
    play->add_flag("--json", options.asJson, "Write JSON");
    from->check(secondsFrom(0.0))->type_name("SECONDS");
    to->check(secondsFrom(0.0))->type_name("SECONDS");
    step->check(secondsFrom(MIN_STEP))->type_name("SECONDS");
    live->check(secondsFrom(MIN_STEP))->type_name("SECONDS");
    node->allow_extra_args(false)->type_name("ID");
    for (CLI::Option* option : {from, to, step, node})
    {
        live->excludes(option);
    }
    play->callback(
        [&options]
        {
            if (options.from && options.to && *options.from > *options.to)
            {
                throw CLI::ValidationError("--from", "is behind --to");
            }
        });
}
} // namespace velmoran::examples
