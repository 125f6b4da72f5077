#include "examples/scenetool/PickCommand.h"

#include "examples/scenetool/SceneFacts.h"
#include "examples/scenetool/SceneLoader.h"
#include "examples/scenetool/ScenePicker.h"
#include "examples/scenetool/StopWatch.h"
#include "examples/scenetool/Text.h"

#include <filesystem>

namespace velmoran::examples
{
namespace
{
/// A ray's answer, with the times that it took.
struct Answer
{
    boost::optional<Pick> pick;
    double buildSeconds = 0.0;
    double askSeconds = 0.0;
    std::size_t cells = 0;
};

Answer ask(const scene::SceneManagerPtr& scene, const PickOptions& options)
{
    const ScenePicker picker(scene);
    Answer answer;
    const StopWatch watch;
    answer.pick = picker.pick(options.origin, options.direction);
    answer.askSeconds = watch.getSeconds();
    answer.buildSeconds = picker.getBuildSeconds();
    answer.cells = picker.countCells();
    return answer;
}

Json toJson(const Eigen::Vector3d& point)
{
    return {point.x(), point.y(), point.z()};
}

Json collectPick(const Pick& pick)
{
    Json corners = Json::array();
    for (const Eigen::Vector3d& corner : pick.corners)
    {
        corners.push_back(toJson(corner));
    }
    return {{"geometry", pick.geometryID},
            {"distance", pick.distance},
            {"point", toJson(pick.point)},
            {"triangle", std::move(corners)}};
}

void writeJson(const PickOptions& options, const Answer& answer, std::ostream& out)
{
    const Json json = {{"file", std::filesystem::path(options.fileName).filename().string()},
                       {"origin", toJson(options.origin)},
                       {"direction", toJson(options.direction)},
                       {"cells", answer.cells},
                       {"build_seconds", answer.buildSeconds},
                       {"pick_seconds", answer.askSeconds},
                       {"hit", answer.pick ? collectPick(*answer.pick) : Json(nullptr)}};
    // Documents may hold identifiers that are not UTF-8.
    out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

void printAnswer(const PickOptions& options, const Answer& answer, std::ostream& out)
{
    out << onOneLine(options.fileName) << ", ray from " << pointText(options.origin) << " along "
        << pointText(options.direction) << '\n';
    if (answer.pick)
    {
        out << "  meets " << quoted(answer.pick->geometryID) << " at "
            << pointText(answer.pick->point) << ", distance " << shortNumber(answer.pick->distance)
            << '\n';
    }
    else
    {
        out << "  meets nothing\n";
    }
    out << "  octree of " << countText(answer.cells, "cell", "cells") << " built in "
        << durationText(answer.buildSeconds) << ", asked in " << durationText(answer.askSeconds)
        << '\n';
}
} // namespace

void runPick(const PickOptions& options, const Console& console)
{
    const LoadedScene loaded = openScene(options.fileName, console);
    const Answer answer = ask(loaded.scene, options);
    if (options.asJson)
    {
        writeJson(options, answer, console.out);
    }
    else
    {
        printAnswer(options, answer, console.out);
    }
}
} // namespace velmoran::examples
