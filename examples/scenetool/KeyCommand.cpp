#include "examples/scenetool/KeyCommand.h"

#include "examples/scenetool/Channels.h"
#include "examples/scenetool/LivePlay.h"
#include "examples/scenetool/ObjOutput.h"
#include "examples/scenetool/PoseKeyer.h"
#include "examples/scenetool/Progress.h"
#include "examples/scenetool/SceneLoader.h"
#include "examples/scenetool/Text.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <algorithm>

namespace velmoran::examples
{
namespace
{
void printKeyed(const LoadedScene& loaded, const PoseKeyer& keyer, std::ostream& out)
{
    std::vector<float> times;
    loaded.scene->getAnimationManager()->calculateFrameTimes(keyer.getAnimation(), times);
    std::sort(times.begin(), times.end());
    std::vector<std::string> names;
    for (const scene::NodePtr& node : getAnimatedNodes(*loaded.scene, keyer.getAnimation()))
    {
        names.push_back(node->getID());
    }
    std::string timeTexts;
    for (const float time : times)
    {
        timeTexts += (timeTexts.empty() ? "" : ", ") + shortNumber(time);
    }
    const std::string head = "  nodes     " + padLeft(std::to_string(names.size()), 4) + "  ";
    out << "Keyed " << onOneLine(loaded.fileName) << '\n'
        << head << wrapNames(names, head.size(), 2) << '\n'
        << "  key times " << padLeft(std::to_string(times.size()), 4) << "  " << timeTexts << " s\n"
        << "  duration        "
        << shortNumber(
               static_cast<double>(keyer.getAnimation()->getDuration().total_milliseconds()) / 1e3)
        << " s\n";
}

void printSamples(const PoseKeyer& keyer, std::ostream& out)
{
    for (const PoseSample& sample : keyer.getSamples())
    {
        if (!sample.nodes.empty())
        {
            out << '\n';
            printPose(sample, out);
        }
    }
}

void playKeyed(const LoadedScene& loaded, const PoseKeyer& keyer, double seconds,
               const Console& console)
{
    const LiveResult result =
        playLive(loaded.scene, keyer.getAnimation(), seconds, "Playing the keys", console);
    console.out << "Played for " << shortNumber(result.seconds)
                << " s on the scene's worker thread\n";
    printLive(result, console.out);
}
} // namespace

void runKey(const KeyOptions& options, const Console& console)
{
    const LoadedScene loaded = openScene(options.fileName, console);
    PoseKeyer keyer(loaded.scene, options.poses, loaded.fileName);
    float distance = 0.0F;
    {
        Progress progress(console.errIsTerminal ? &console.err : nullptr);
        progress.setTask("Keying " + onOneLine(options.fileName));
        keyer.key();
        distance = keyer.playBack();
    }
    printKeyed(loaded, keyer, console.out);
    printSamples(keyer, console.out);
    console.out << "\nPlayed back, the matrices at the key times differ by at most "
                << floatText(distance) << '\n';
    if (!options.objFile.empty())
    {
        keyer.applyLast();
        writeObjFile(loaded.scene, options.objFile, console);
    }
    if (options.live)
    {
        playKeyed(loaded, keyer, *options.live, console);
    }
}
} // namespace velmoran::examples
