// Storing equal tuples once: general maps and other libraries.

#include "bench/StreamCases.h"

#ifdef VELMORAN_BENCH_ABSL
#include <absl/container/flat_hash_map.h>
#endif
#ifdef VELMORAN_BENCH_MESHOPTIMIZER
#include <meshoptimizer.h>
#endif

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_map>

namespace velmoran::bench
{
namespace
{
template <typename Map>
Deduplicated deduplicateGrowing(const std::vector<Tuple>& tuples)
{
    Map seen;
    return deduplicateThrough(seen, tuples);
}

/// The map has room for all distinct tuples from the beginning.
template <typename Map>
Deduplicated deduplicateReserved(const std::vector<Tuple>& tuples)
{
    Map seen;
    seen.reserve(tuples.size() / 4);
    return deduplicateThrough(seen, tuples);
}

using HashMap = std::unordered_map<Tuple, unsigned int, TupleHash>;

BENCHMARK_CAPTURE(deduplicate, hash_map, deduplicateReserved<HashMap>)
    ->Name("insertValue/std::unordered_map")
    ->Apply(TUPLES);
BENCHMARK_CAPTURE(deduplicate, growing_hash_map, deduplicateGrowing<HashMap>)
    ->Name("insertValue/std::unordered_map, growing")
    ->Apply(TUPLES);

struct TupleOrder
{
    bool operator()(const Tuple& a, const Tuple& b) const
    {
        return std::tie(a.x, a.y, a.z) < std::tie(b.x, b.y, b.z);
    }
};

BENCHMARK_CAPTURE(deduplicate, ordered_map,
                  deduplicateGrowing<std::map<Tuple, unsigned int, TupleOrder>>)
    ->Name("insertValue/std::map")
    ->Apply(TUPLES);

/// Compares each tuple with all that are stored.
Deduplicated deduplicateScanning(const std::vector<Tuple>& tuples)
{
    Deduplicated result;
    result.indices.reserve(tuples.size());
    for (const Tuple& tuple : tuples)
    {
        const auto found = std::find(result.data.begin(), result.data.end(), tuple);
        result.indices.push_back(static_cast<unsigned int>(found - result.data.begin()));
        if (found == result.data.end())
        {
            result.data.push_back(tuple);
        }
    }
    return result;
}

BENCHMARK_CAPTURE(deduplicate, scan, deduplicateScanning)
    ->Name("insertValue/linear scan")
    ->Apply(FEW_TUPLES);

#ifdef VELMORAN_BENCH_ABSL
struct AbslHash
{
    std::size_t operator()(const Tuple& tuple) const
    {
        return absl::HashOf(tuple.x, tuple.y, tuple.z);
    }
};
using AbslMap = absl::flat_hash_map<Tuple, unsigned int, AbslHash>;

BENCHMARK_CAPTURE(deduplicate, absl, deduplicateReserved<AbslMap>)
    ->Name("insertValue/absl::flat_hash_map")
    ->Apply(TUPLES);
BENCHMARK_CAPTURE(deduplicate, growing_absl, deduplicateGrowing<AbslMap>)
    ->Name("insertValue/absl::flat_hash_map, growing")
    ->Apply(TUPLES);
#endif

#ifdef VELMORAN_BENCH_MESHOPTIMIZER
Deduplicated deduplicateMeshoptimizer(const std::vector<Tuple>& tuples)
{
    Deduplicated result;
    result.indices.resize(tuples.size());
    const std::size_t distinct = meshopt_generateVertexRemap(
        result.indices.data(), nullptr, tuples.size(), tuples.data(), tuples.size(), sizeof(Tuple));
    result.data.resize(distinct);
    meshopt_remapVertexBuffer(result.data.data(), tuples.data(), tuples.size(), sizeof(Tuple),
                              result.indices.data());
    return result;
}

BENCHMARK_CAPTURE(deduplicate, meshoptimizer, deduplicateMeshoptimizer)
    ->Name("insertValue/meshoptimizer")
    ->Apply(TUPLES);
#endif
} // namespace
} // namespace velmoran::bench
