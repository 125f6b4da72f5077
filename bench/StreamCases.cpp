#include "bench/StreamCases.h"

#include <algorithm>
#include <map>
#include <random>
#include <unordered_map>

namespace velmoran::bench
{
namespace
{
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

Deduplicated expectedOf(const std::vector<Tuple>& tuples)
{
    std::unordered_map<Tuple, unsigned int, TupleHash> seen;
    return deduplicateThrough(seen, tuples);
}
} // namespace

const TupleSample& tupleSampleOf(std::int64_t count)
{
    static std::map<std::int64_t, TupleSample> samples;
    TupleSample& sample = samples[count];
    if (sample.tuples.empty())
    {
        sample.tuples = makeTuples(static_cast<std::size_t>(count));
        sample.expected = expectedOf(sample.tuples);
    }
    return sample;
}

void deduplicate(benchmark::State& state, Deduplicated (*run)(const std::vector<Tuple>&))
{
    const TupleSample& sample = tupleSampleOf(state.range(0));
    Deduplicated result;
    for (auto _ : state)
    {
        result = run(sample.tuples);
        benchmark::DoNotOptimize(result.indices.data());
    }
    require(state, result.indices == sample.expected.indices, "wrong indices");
    require(state, result.data == sample.expected.data, "wrong data");
    countItems(state, state.range(0));
}
} // namespace velmoran::bench
