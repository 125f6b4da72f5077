#include "examples/scenetool/LivePlay.h"

#include "examples/scenetool/EventPrinter.h"
#include "examples/scenetool/ProgressBar.h"
#include "examples/scenetool/Text.h"
#include "scene/animation/AnimationManager.h"
#include "scene/manager/SceneLock.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

namespace velmoran::examples
{
namespace
{
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

std::string tenths(double value)
{
    return shortNumber(std::round(value * 10.0) / 10.0);
}

void waitFor(double seconds, Clock::time_point begin, ProgressBar& bar)
{
    const Seconds refresh(0.1);
    double done = 0.0;
    while (done < seconds)
    {
        bar.show(done / seconds, tenths(done) + " of " + shortNumber(seconds) + " s");
        std::this_thread::sleep_for(std::min(refresh, Seconds(seconds - done)));
        done = Seconds(Clock::now() - begin).count();
    }
}

std::size_t countAll(const LiveResult& result)
{
    std::size_t count = 0;
    for (const auto& [name, each] : result.events)
    {
        count += each;
    }
    return count;
}

double rate(std::size_t count, const LiveResult& result)
{
    return static_cast<double>(count) / result.seconds;
}

void printRow(const std::string& name, const std::string& count, const std::string& perSecond,
              std::ostream& out)
{
    out << "  " << padRight(name, 26) << padLeft(count, 10) << padLeft(perSecond, 13) << '\n';
}
} // namespace

LiveResult playLive(const scene::SceneManagerPtr& scene, const scene::AnimationPtr& animation,
                    double seconds, const std::string& task, const Console& console)
{
    const scene::AnimationManagerPtr manager = scene->getAnimationManager();
    const EventPrinter events(scene->getEventManager(), nullptr, false);
    ProgressBar bar(console.errIsTerminal ? &console.err : nullptr, task);
    {
        const scene::SceneLock lock(scene);
        scene->removeSceneController(manager); // so that it is there once
        manager->setAnimation(animation);
        manager->setTime({});
        manager->resume();
        scene->addSceneController(manager);
    }
    const Clock::time_point begin = Clock::now();
    waitFor(seconds, begin, bar);
    const scene::SceneLock lock(scene);
    manager->pause();
    return {Seconds(Clock::now() - begin).count(), events.getCounts()};
}

void printLive(const LiveResult& result, std::ostream& out)
{
    printRow("events", "count", "per second", out);
    const auto print = [&](const std::string& name, std::size_t count)
    { printRow(name, std::to_string(count), tenths(rate(count, result)), out); };
    for (const auto& [name, count] : result.events)
    {
        print(name, count);
    }
    print("in all", countAll(result));
}

Json collectLive(const LiveResult& result)
{
    const std::size_t all = countAll(result);
    Json facts = {{"live_seconds", result.seconds},
                  {"event_count", all},
                  {"events_per_second", rate(all, result)},
                  {"events", Json::object()}};
    for (const auto& [name, count] : result.events)
    {
        facts["events"][name] = {{"count", count}, {"per_second", rate(count, result)}};
    }
    return facts;
}
} // namespace velmoran::examples
