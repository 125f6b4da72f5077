#include "examples/scenetool/PlayCommand.h"

#include "examples/scenetool/Channels.h"
#include "examples/scenetool/LivePlay.h"
#include "examples/scenetool/Poses.h"
#include "examples/scenetool/Progress.h"
#include "examples/scenetool/SceneLoader.h"
#include "examples/scenetool/ScenePlayer.h"
#include "examples/scenetool/Text.h"
#include "scene/manager/SceneManager.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>

namespace velmoran::examples
{
namespace
{
constexpr std::int64_t MILLISECOND = 1000;

/// In microseconds, the finest that a playhead can tell.
struct TimeRange
{
    std::int64_t from = 0;
    std::int64_t to = 0;
    std::int64_t step = 0;
};

std::int64_t toMicroseconds(double seconds)
{
    return std::llround(seconds * 1e6);
}

double toSeconds(std::int64_t microseconds)
{
    return static_cast<double>(microseconds) / 1e6;
}

/// Nothing can be shown behind the end: says so where it was asked for.
TimeRange chooseTimes(const PlayOptions& options, std::int64_t duration, const Console& console)
{
    TimeRange range;
    range.from = toMicroseconds(options.from.value_or(0.0));
    range.to = options.to ? toMicroseconds(*options.to) : duration;
    const std::string end = "the animation ends at " + shortNumber(toSeconds(duration)) + " s";
    // Durations are whole milliseconds.
    if (range.from >= duration + MILLISECOND)
    {
        throw CommandError("--from " + shortNumber(*options.from) + ": " + end);
    }
    if (range.to >= duration + MILLISECOND)
    {
        warn("--to " + shortNumber(*options.to) + ": " + end, console);
        range.to = duration;
    }
    range.to = std::max(range.to, range.from);
    const std::int64_t quarter = (range.to - range.from) / 4;
    range.step = std::max(options.step ? toMicroseconds(*options.step) : quarter, MILLISECOND);
    return range;
}

/// Writes samples as they come, either for people or as a list in JSON.
class SampleWriter
{
public:
    SampleWriter(const PlayOptions& options, double duration, std::ostream& out)
        : m_asJson(options.asJson), m_out(out)
    {
        if (!m_asJson)
        {
            m_out << onOneLine(options.fileName) << ", " << shortNumber(duration) << " s\n";
            return;
        }
        const Json head = {{"file", std::filesystem::path(options.fileName).filename().string()},
                           {"duration", duration}};
        const std::string text = dump(head);
        m_out << text.substr(0, text.size() - 1) << ",\"world_matrices\":[";
    }

    void write(const PoseSample& sample)
    {
        if (!m_asJson)
        {
            m_out << '\n';
            printPose(sample, m_out);
            return;
        }
        m_out << (m_isFirst ? "\n" : ",\n") << dump(collectPose(sample));
        m_isFirst = false;
    }

    void finish()
    {
        if (m_asJson)
        {
            m_out << "\n]}\n";
        }
    }

private:
    /// Documents may hold identifiers that are not UTF-8.
    static std::string dump(const Json& json)
    {
        return json.dump(-1, ' ', false, Json::error_handler_t::replace);
    }

    const bool m_asJson;
    std::ostream& m_out;
    bool m_isFirst = true;
};

/// The animations of the document, as one.
scene::AnimationPtr findAnimation(const LoadedScene& loaded)
{
    const scene::AnimationPtr animation = joinAnimations(*loaded.scene);
    if (!animation)
    {
        throw CommandError(onOneLine(loaded.fileName) + " holds no animation");
    }
    if (getAnimatedNodes(*loaded.scene, animation).empty())
    {
        throw CommandError("no animation of " + onOneLine(loaded.fileName) +
                           " moves a node of its scene");
    }
    return animation;
}

void playInSteps(const LoadedScene& loaded, const scene::AnimationPtr& animation,
                 const PlayOptions& options, const Console& console)
{
    const std::vector<scene::NodePtr> nodes =
        options.nodeIDs.empty() ? getAnimatedNodes(*loaded.scene, animation)
                                : findNodes(loaded.scene, options.nodeIDs, loaded.fileName);
    ScenePlayer player(loaded.scene, animation);
    const std::int64_t duration = player.getDuration().total_microseconds();
    const TimeRange range = chooseTimes(options, duration, console);
    Progress progress(console.errIsTerminal && !console.outIsTerminal ? &console.err : nullptr);
    progress.setTask("Playing " + onOneLine(loaded.fileName));
    SampleWriter writer(options, toSeconds(duration), console.out);
    for (std::int64_t time = range.from; time <= range.to && console.out; time += range.step)
    {
        player.show(boost::posix_time::microseconds(time));
        writer.write(samplePose(loaded.scene, nodes, toSeconds(time)));
    }
    writer.finish();
}

void playOnWorker(const LoadedScene& loaded, const scene::AnimationPtr& animation,
                  const PlayOptions& options, const Console& console)
{
    const LiveResult result = playLive(loaded.scene, animation, *options.live,
                                       "Playing " + onOneLine(loaded.fileName), console);
    if (options.asJson)
    {
        console.out << collectLive(result).dump(2) << '\n';
        return;
    }
    console.out << "Played " << onOneLine(loaded.fileName) << " for " << shortNumber(result.seconds)
                << " s on the scene's worker thread\n";
    printLive(result, console.out);
}
} // namespace

void runPlay(const PlayOptions& options, const Console& console)
{
    const LoadedScene loaded = openScene(options.fileName, console);
    const scene::AnimationPtr animation = findAnimation(loaded);
    if (options.live)
    {
        playOnWorker(loaded, animation, options, console);
    }
    else
    {
        playInSteps(loaded, animation, options, console);
    }
}
} // namespace velmoran::examples
