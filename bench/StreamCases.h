#pragma once

#include "bench/Cases.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace velmoran::bench
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

struct TupleHash
{
    std::size_t operator()(const Tuple& tuple) const
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
};

/// The distinct tuples in the order of their first appearance, and for each input
/// tuple its index among them.
struct Deduplicated
{
    std::vector<Tuple> data;
    std::vector<unsigned int> indices;
};

/// Through a general map from tuple to index.
template <typename Map>
Deduplicated deduplicateThrough(Map& seen, const std::vector<Tuple>& tuples)
{
    Deduplicated result;
    result.indices.reserve(tuples.size());
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

struct TupleSample
{
    std::vector<Tuple> tuples; ///< each four times, in random order
    Deduplicated expected;
};

/// The sample of `count` tuples that all cases use. Made at the first call.
const TupleSample& tupleSampleOf(std::int64_t count);

/// Times a function that stores equal tuples once; fails the case when it gives others.
void deduplicate(benchmark::State& state, Deduplicated (*run)(const std::vector<Tuple>&));

/// A million and four millions.
constexpr auto TUPLES = &atNAnd4N<1000000>;

/// So few that comparing each tuple with all before it comes to an end.
constexpr auto FEW_TUPLES = &atNAnd4N<5000, 20>;
} // namespace velmoran::bench
