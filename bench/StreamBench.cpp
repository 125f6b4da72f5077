// Storing equal tuples once: a million calls of insertValue, each tuple four times.

#include "bench/Cases.h"
#include "scene/geometry/Stream.h"

#ifdef VELMORAN_BENCH_ABSL
#include <absl/container/flat_hash_map.h>
#endif
#ifdef VELMORAN_BENCH_MESHOPTIMIZER
#include <meshoptimizer.h>
#endif

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <unordered_map>
#include <vector>

namespace velmoran::bench
{
namespace
{
struct Tuple
{
    float x;
    float y;
    float z;

    friend bool operator==(const Tuple& a, const Tuple& b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
};

/// The distinct tuples in the order of their first appearance, and for each input
/// tuple its index among them.
struct Result
{
    std::vector<Tuple> data;
    std::vector<unsigned int> indices;
};

std::uint32_t hashOf(const Tuple& tuple)
{
    std::uint64_t hash = 0;
    for (const float value : {tuple.x, tuple.y, tuple.z})
    {
        const float positiveZero = value + 0.0F;
        std::uint32_t bits = 0;
        std::memcpy(&bits, &positiveZero, sizeof bits);
        hash = ((hash ^ (hash >> 32)) ^ bits) * 0x9E3779B97F4A7C15U;
    }
    return static_cast<std::uint32_t>(hash >> 32);
}

struct TupleHash
{
    std::size_t operator()(const Tuple& tuple) const { return hashOf(tuple); }
};

std::vector<Tuple> makeTuples(std::size_t count)
{
    std::mt19937 random(static_cast<unsigned int>(count));
    std::uniform_real_distribution<float> coordinate(-1.0F, 1.0F);
    std::vector<Tuple> tuples(count);
    for (std::size_t i = 0; i < count; i += 4)
    {
        const Tuple tuple{coordinate(random), coordinate(random), coordinate(random)};
        std::fill_n(&tuples[i], 4, tuple);
    }
    std::shuffle(tuples.begin(), tuples.end(), random);
    return tuples;
}

/// Through a general map from tuple to index, reserved for all distinct tuples.
template <typename Map>
Result deduplicateWithMap(const std::vector<Tuple>& tuples)
{
    Result result;
    result.indices.reserve(tuples.size());
    Map seen;
    seen.reserve(tuples.size() / 4);
    for (const Tuple& tuple : tuples)
    {
        const auto next = static_cast<unsigned int>(result.data.size());
        const auto inserted = seen.try_emplace(tuple, next);
        if (inserted.second)
        {
            result.data.push_back(tuple);
        }
        result.indices.push_back(inserted.first->second);
    }
    return result;
}

using StandardMap = std::unordered_map<Tuple, unsigned int, TupleHash>;

struct Sample
{
    std::vector<Tuple> tuples;
    Result expected;
};

const Sample& sampleOf(std::int64_t count)
{
    static std::map<std::int64_t, Sample> samples;
    Sample& sample = samples[count];
    if (sample.tuples.empty())
    {
        sample.tuples = makeTuples(static_cast<std::size_t>(count));
        sample.expected = deduplicateWithMap<StandardMap>(sample.tuples);
    }
    return sample;
}

/// A table made for exactly this input, its slots asked for 16 tuples ahead.
Result deduplicateFlat(const std::vector<Tuple>& tuples)
{
    constexpr std::size_t AHEAD = 16;
    std::size_t slotCount = 1;
    while (slotCount < tuples.size() + tuples.size() / 4)
    {
        slotCount *= 2;
    }
    const std::size_t mask = slotCount - 1;
    std::vector<unsigned int> slots(slotCount, 0);
    Result result;
    result.indices.resize(tuples.size());
    std::size_t homes[AHEAD];
    for (std::size_t i = 0; i < tuples.size() + AHEAD; ++i)
    {
        const std::size_t home = homes[i % AHEAD];
        if (i < tuples.size())
        {
            homes[i % AHEAD] = hashOf(tuples[i]) & mask;
            __builtin_prefetch(&slots[homes[i % AHEAD]], 1);
        }
        if (i < AHEAD)
        {
            continue;
        }
        const Tuple& tuple = tuples[i - AHEAD];
        std::size_t slot = home;
        while (slots[slot] != 0 && !(result.data[slots[slot] - 1] == tuple))
        {
            slot = (slot + 1) & mask;
        }
        if (slots[slot] == 0)
        {
            result.data.push_back(tuple);
            slots[slot] = static_cast<unsigned int>(result.data.size());
        }
        result.indices[i - AHEAD] = slots[slot] - 1;
    }
    return result;
}

void run(benchmark::State& state, Result (*deduplicate)(const std::vector<Tuple>&))
{
    const Sample& sample = sampleOf(state.range(0));
    Result result;
    for (auto _ : state)
    {
        result = deduplicate(sample.tuples);
        benchmark::DoNotOptimize(result.indices.data());
    }
    require(state, result.indices == sample.expected.indices, "wrong indices");
    require(state, result.data == sample.expected.data, "wrong data");
    countItems(state, state.range(0));
}

using Insertion = std::vector<int> (*)(scene::Stream&, const std::vector<float>&);

std::vector<int> insertOneByOne(scene::Stream& stream, const std::vector<float>& values)
{
    std::vector<int> indices;
    indices.reserve(values.size() / 3);
    for (std::size_t i = 0; i < values.size(); i += 3)
    {
        indices.push_back(stream.insertValue(3, &values[i]));
    }
    return indices;
}

std::vector<int> insertTogether(scene::Stream& stream, const std::vector<float>& values)
{
    return stream.insertValues(values);
}

void runOurs(benchmark::State& state, Insertion insert)
{
    const Sample& sample = sampleOf(state.range(0));
    std::vector<float> values(3 * sample.tuples.size());
    std::memcpy(values.data(), sample.tuples.data(), values.size() * sizeof(float));
    scene::Stream stream("positions", 3, false);
    std::vector<int> indices;
    for (auto _ : state)
    {
        stream = scene::Stream("positions", 3, false);
        indices = insert(stream, values);
        benchmark::DoNotOptimize(indices.data());
    }
    const std::vector<float>& data = stream.getData();
    const Result& expected = sample.expected;
    require(state,
            std::equal(indices.begin(), indices.end(), expected.indices.begin(),
                       expected.indices.end(), [](int a, unsigned int b) { return a == int(b); }),
            "wrong indices");
    require(state,
            data.size() == 3 * expected.data.size() &&
                std::memcmp(data.data(), expected.data.data(), data.size() * sizeof(float)) == 0,
            "wrong data");
    countItems(state, state.range(0));
}

constexpr auto SIZES = &atNAnd4N<1000000>;

BENCHMARK_CAPTURE(runOurs, one, insertOneByOne)->Name("insertValue/ours")->Apply(SIZES);
BENCHMARK_CAPTURE(runOurs, all, insertTogether)->Name("insertValues/ours")->Apply(SIZES);
BENCHMARK_CAPTURE(run, limit, deduplicateFlat)->Name("insertValue/limit")->Apply(SIZES);
BENCHMARK_CAPTURE(run, map, deduplicateWithMap<StandardMap>)
    ->Name("insertValue/std::unordered_map")
    ->Apply(SIZES);

#ifdef VELMORAN_BENCH_ABSL
struct AbslHash
{
    std::size_t operator()(const Tuple& tuple) const
    {
        return absl::HashOf(tuple.x, tuple.y, tuple.z);
    }
};
using AbslMap = absl::flat_hash_map<Tuple, unsigned int, AbslHash>;

BENCHMARK_CAPTURE(run, absl, deduplicateWithMap<AbslMap>)
    ->Name("insertValue/absl::flat_hash_map")
    ->Apply(SIZES);
#endif

#ifdef VELMORAN_BENCH_MESHOPTIMIZER
Result deduplicateMeshoptimizer(const std::vector<Tuple>& tuples)
{
    Result result;
    result.indices.resize(tuples.size());
    const std::size_t distinct = meshopt_generateVertexRemap(
        result.indices.data(), nullptr, tuples.size(), tuples.data(), tuples.size(), sizeof(Tuple));
    result.data.resize(distinct);
    meshopt_remapVertexBuffer(result.data.data(), tuples.data(), tuples.size(), sizeof(Tuple),
                              result.indices.data());
    return result;
}

BENCHMARK_CAPTURE(run, meshoptimizer, deduplicateMeshoptimizer)
    ->Name("insertValue/meshoptimizer")
    ->Apply(SIZES);
#endif
} // namespace
} // namespace velmoran::bench
