#include "examples/scenetool/AnimationFacts.h"

#include "examples/scenetool/Channels.h"
#include "examples/scenetool/Text.h"
#include "scene/animation/Animation.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/ITransformation.h"
#include "scene/manager/SceneManager.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace velmoran::examples
{
namespace
{
using scene::Sampler;
using scene::StreamPtr;

/// What is gathered over all channels.
struct Totals
{
    std::size_t keys = 0;
    std::size_t resolved = 0;
    float firstTime = std::nanf("");
    float lastTime = std::nanf("");
    std::set<std::string> interpolations;
};

StreamPtr getStream(const scene::SamplerPtr& sampler, Sampler::Semantic semantic)
{
    return sampler ? sampler->getStreamBySemantic(semantic) : StreamPtr();
}

Json tupleOf(const StreamPtr& stream, std::size_t index)
{
    const auto stride = static_cast<std::size_t>(stream->getStride());
    const auto begin = stream->getData().begin() + static_cast<std::ptrdiff_t>(index * stride);
    return std::vector<float>(begin, begin + static_cast<std::ptrdiff_t>(stride));
}

void collectTimes(const StreamPtr& input, Json& facts, Totals& totals)
{
    const bool hasKeys = input && !input->getData().empty();
    facts["keys"] = hasKeys ? input->getData().size() : 0;
    facts["first_time"] = hasKeys ? Json(input->getData().front()) : Json(nullptr);
    facts["last_time"] = hasKeys ? Json(input->getData().back()) : Json(nullptr);
    if (hasKeys)
    {
        totals.keys += input->getData().size();
        for (const float time : input->getData())
        {
            totals.firstTime = std::fmin(totals.firstTime, time);
            totals.lastTime = std::fmax(totals.lastTime, time);
        }
    }
}

void collectValues(const StreamPtr& output, Json& facts)
{
    const std::size_t count = output ? tupleCount(output) : 0;
    facts["output_stride"] = output ? Json(output->getStride()) : Json(nullptr);
    facts["first_value"] = count > 0 ? tupleOf(output, 0) : Json(nullptr);
    facts["last_value"] = count > 0 ? tupleOf(output, count - 1) : Json(nullptr);
}

Json collectChannel(const scene::SceneManager& scene, const scene::Animation::Channel& channel,
                    Totals& totals)
{
    const auto& [sampler, target] = channel;
    const scene::ITransformationPtr transformation = findTarget(scene, target).transformation;
    Json facts;
    facts["target"] = target;
    facts["sampler"] = sampler ? Json(sampler->getId()) : Json(nullptr);
    facts["resolves_to"] =
        transformation ? Json(transformationName(transformation->getType())) : Json(nullptr);
    totals.resolved += transformation ? 1U : 0U;
    collectTimes(getStream(sampler, Sampler::INPUT), facts, totals);
    collectValues(getStream(sampler, Sampler::OUTPUT), facts);
    if (const StreamPtr names = getStream(sampler, Sampler::INTERPOLATION))
    {
        const std::vector<std::string>& list = names->getNameList();
        totals.interpolations.insert(list.begin(), list.end());
    }
    return facts;
}

Json timeOrNull(float time)
{
    return std::isnan(time) ? Json(nullptr) : Json(time);
}
} // namespace

void collectAnimation(const scene::SceneManagerPtr& scene, Json& facts)
{
    Totals totals;
    Json channels = Json::array();
    for (const auto& animation : getAllAnimations(scene->getAnimationsLibrary()))
    {
        for (const scene::Animation::Channel& channel : animation->getChannelArray())
        {
            channels.push_back(collectChannel(*scene, channel, totals));
        }
    }
    if (channels.empty())
    {
        return;
    }
    facts["animation"] = {{"channel_count", channels.size()},
                          {"channels_resolved_to_transformations", totals.resolved},
                          {"first_key_time", timeOrNull(totals.firstTime)},
                          {"duration_last_key_time", timeOrNull(totals.lastTime)},
                          {"key_count_total", totals.keys},
                          {"interpolations", totals.interpolations}};
    facts["animation"]["channels"] = std::move(channels);
}

std::string describeAnimation(const Json& animation)
{
    const auto count = animation["channel_count"].get<std::size_t>();
    const auto lost = count - animation["channels_resolved_to_transformations"].get<std::size_t>();
    std::string text = countText(count, "channel", "channels") + ", " +
                       countText(animation["key_count_total"], "key", "keys");
    if (animation["first_key_time"].is_number())
    {
        text += " from " + shortNumber(animation["first_key_time"]) + " to " +
                shortNumber(animation["duration_last_key_time"]) + " s";
    }
    if (lost > 0)
    {
        text += "; " + countText(lost, "channel moves", "channels move") + " no node of the scene";
    }
    return text;
}
} // namespace velmoran::examples
