// Storing equal tuples once: a million calls of insertValue, each tuple four times.

#include "bench/StreamCases.h"
#include "scene/geometry/Stream.h"

#include <algorithm>
#include <cstring>

namespace velmoran::bench
{
namespace
{
/// A table made for exactly this input, its slots asked for 16 tuples ahead.
Deduplicated deduplicateFlat(const std::vector<Tuple>& tuples)
{
    constexpr std::size_t AHEAD = 16;
    std::size_t slotCount = 1;
    while (slotCount < tuples.size() + tuples.size() / 4)
    {
        slotCount *= 2;
    }
    const std::size_t mask = slotCount - 1;
    std::vector<unsigned int> slots(slotCount, 0);
    Deduplicated result;
    result.indices.resize(tuples.size());
    std::size_t homes[AHEAD];
    for (std::size_t i = 0; i < tuples.size() + AHEAD; ++i)
    {
        const std::size_t home = homes[i % AHEAD];
        if (i < tuples.size())
        {
            homes[i % AHEAD] = TupleHash()(tuples[i]) & mask;
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
    const TupleSample& sample = tupleSampleOf(state.range(0));
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
    const Deduplicated& expected = sample.expected;
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

BENCHMARK_CAPTURE(runOurs, one, insertOneByOne)->Name("insertValue/ours")->Apply(TUPLES);
BENCHMARK_CAPTURE(runOurs, few, insertOneByOne)->Name("insertValue/ours")->Apply(FEW_TUPLES);
BENCHMARK_CAPTURE(runOurs, all, insertTogether)->Name("insertValues/ours")->Apply(TUPLES);
BENCHMARK_CAPTURE(deduplicate, limit, deduplicateFlat)->Name("insertValue/limit")->Apply(TUPLES);
} // namespace
} // namespace velmoran::bench
