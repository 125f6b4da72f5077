#pragma once

#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "tests/scene/Numbers.h"
#include "tests/scene/SceneUnderTest.h"

namespace velmoran::scene
{
using boost::posix_time::milliseconds;

/// A sampler with these key times and values; all its keys have one interpolation.
inline SamplerPtr makeSampler(const std::vector<float>& times, const std::vector<float>& values,
                              int stride, const std::string& interpolation = "LINEAR")
{
    const auto sampler = boost::make_shared<Sampler>("s");
    const auto addInput =
        [&](const char* semantic, const char* param, int width, const std::vector<float>& data)
    {
        const auto stream = boost::make_shared<Stream>(semantic, width, true);
        stream->addParam(param, "float");
        stream->setData(data);
        sampler->addInput(semantic, stream);
        return stream;
    };
    addInput("INPUT", "TIME", 1, times);
    addInput("OUTPUT", "VALUE", stride, values);
    addInput("INTERPOLATION", "INTERPOLATION", 1, {})
        ->setNameList(std::vector<std::string>(times.size(), interpolation));
    return sampler;
}

/// A scene whose animation manager is driven by the test, not by the worker.
struct PlayedScene : SceneUnderTest
{
    PlayedScene()
    {
        player->attach(manager);
        events.take();
    }

    /// Replaces the animation by one with a single channel.
    void play(const SamplerPtr& sampler, const std::string& target)
    {
        animation = boost::make_shared<Animation>("a", "");
        animation->addChannel(sampler, target);
        player->setAnimation(animation);
    }

    /// Moves the paused playhead and evaluates; whether nodes were written.
    bool showAt(int millis)
    {
        player->pause();
        player->setTime(milliseconds(millis));
        return player->update(milliseconds(0));
    }

    AnimationPtr animation = boost::make_shared<Animation>("a", "");
    boost::shared_ptr<AnimationManager> player = boost::make_shared<AnimationManager>();
};
} // namespace velmoran::scene
