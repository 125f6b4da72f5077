#include "scene/animation/KeyframeEditing.h"

#include "core/utils/AllOrNothing.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/StreamCount.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace velmoran::scene
{
namespace
{
constexpr std::size_t KEY_SIZE = 16;
constexpr double SAME_KEY_SECONDS = 0.005;

bool holdsKeyTimes(const StreamPtr& stream)
{
    return stream && stream->getParamList().size() == 1 &&
           stream->getParamList().front().first == "TIME";
}

/// Where a key at `time` belongs: behind the last earlier one.
std::size_t insertionIndex(const std::vector<float>& times, float time)
{
    const auto earlier =
        std::find_if(times.rbegin(), times.rend(), [time](float key) { return key < time; });
    return static_cast<std::size_t>(times.rend() - earlier);
}

void insertFloats(Stream& stream, std::size_t position, const float* floats, std::size_t n)
{
    std::vector<float>& data = stream.mutableData();
    data.insert(data.begin() + static_cast<std::ptrdiff_t>(std::min(position, data.size())), floats,
                floats + n);
    addToCount(stream, 1);
}

void insertName(Stream& stream, std::size_t index)
{
    // A key without a name is linear, too.
    std::vector<std::string>& names = stream.mutableNameList();
    const std::size_t missing = index - std::min(names.size(), index);
    names.resize(names.size() + missing, "LINEAR");
    names.insert(names.begin() + static_cast<std::ptrdiff_t>(index), "LINEAR");
    addToCount(stream, missing + 1);
}

/// Zeros for one key behind the slot of the first key.
void insertTangent(Stream& stream)
{
    const auto stride = static_cast<std::size_t>(std::max(stream.getStride(), 0));
    if (stride != 0)
    {
        std::vector<float>& data = stream.mutableData();
        data.insert(data.begin() + static_cast<std::ptrdiff_t>(std::min(stride, data.size())),
                    stride, 0.0F);
        addToCount(stream, 1);
    }
}

void eraseFloats(const StreamPtr& stream, std::size_t index, std::size_t stride)
{
    if (!stream || stride == 0 || index >= stream->getData().size() / stride)
    {
        return;
    }
    std::vector<float>& data = stream->mutableData();
    const auto first = data.begin() + static_cast<std::ptrdiff_t>(index * stride);
    data.erase(first, first + static_cast<std::ptrdiff_t>(stride));
    takeFromCount(*stream);
}

void eraseTuple(const StreamPtr& stream, std::size_t index)
{
    if (stream)
    {
        eraseFloats(stream, index, static_cast<std::size_t>(std::max(stream->getStride(), 0)));
    }
}

void eraseName(const StreamPtr& stream, std::size_t index)
{
    if (!stream || index >= stream->getNameList().size())
    {
        return;
    }
    std::vector<std::string>& names = stream->mutableNameList();
    names.erase(names.begin() + static_cast<std::ptrdiff_t>(index));
    takeFromCount(*stream);
}
} // namespace

void makeRoomForKeys(const Sampler& sampler, std::size_t count)
{
    const StreamPtr times = sampler.getStreamBySemantic(Sampler::INPUT);
    if (!holdsKeyTimes(times))
    {
        return;
    }
    core::utils::makeRoom(times->mutableData(), count);
    const StreamPtr values = sampler.getStreamBySemantic(Sampler::OUTPUT);
    if (values)
    {
        core::utils::makeRoom(values->mutableData(), KEY_SIZE * count);
    }
    const StreamPtr names = sampler.getStreamBySemantic(Sampler::INTERPOLATION);
    if (names)
    {
        std::vector<std::string>& list = names->mutableNameList();
        const std::size_t keys = times->getData().size();
        core::utils::makeRoom(list, count + keys - std::min(keys, list.size()));
    }
    for (const Sampler::Semantic tangent : {Sampler::IN_TANGENT, Sampler::OUT_TANGENT})
    {
        const StreamPtr stream = sampler.getStreamBySemantic(tangent);
        if (stream && stream->getStride() > 0)
        {
            core::utils::makeRoom(stream->mutableData(),
                                  count * static_cast<std::size_t>(stream->getStride()));
        }
    }
}

void insertKey(const Sampler& sampler, float time, const Eigen::Matrix4f& matrix)
{
    const StreamPtr times = sampler.getStreamBySemantic(Sampler::INPUT);
    const StreamPtr values = sampler.getStreamBySemantic(Sampler::OUTPUT);
    const StreamPtr names = sampler.getStreamBySemantic(Sampler::INTERPOLATION);
    if (!holdsKeyTimes(times))
    {
        return;
    }
    const std::size_t index = insertionIndex(times->getData(), time);
    if (values)
    {
        if (values->getStride() != static_cast<int>(KEY_SIZE) ||
            values->getData().size() / KEY_SIZE < index)
        {
            return;
        }
        const Eigen::Matrix<float, 4, 4, Eigen::RowMajor> rows = matrix;
        insertFloats(*values, KEY_SIZE * index, rows.data(), KEY_SIZE);
    }
    insertFloats(*times, index, &time, 1);
    if (names)
    {
        insertName(*names, index);
    }
    for (const Sampler::Semantic tangent : {Sampler::IN_TANGENT, Sampler::OUT_TANGENT})
    {
        const StreamPtr stream = sampler.getStreamBySemantic(tangent);
        if (stream)
        {
            insertTangent(*stream);
        }
    }
}

bool removeKey(const Sampler& sampler, float time)
{
    const StreamPtr times = sampler.getStreamBySemantic(Sampler::INPUT);
    if (!times)
    {
        return false;
    }
    const std::vector<float>& data = times->getData();
    const auto found =
        std::find_if(data.rbegin(), data.rend(),
                     [time](float key) { return std::fabs(time - key) < SAME_KEY_SECONDS; });
    if (found == data.rend())
    {
        return false;
    }
    const auto index = static_cast<std::size_t>(data.rend() - found) - 1;
    eraseFloats(times, index, 1);
    eraseName(sampler.getStreamBySemantic(Sampler::INTERPOLATION), index);
    eraseTuple(sampler.getStreamBySemantic(Sampler::IN_TANGENT), index);
    eraseTuple(sampler.getStreamBySemantic(Sampler::OUT_TANGENT), index);
    eraseTuple(sampler.getStreamBySemantic(Sampler::OUTPUT), index);
    return true;
}
} // namespace velmoran::scene
