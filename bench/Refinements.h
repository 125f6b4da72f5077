#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

namespace velmoran::bench
{
/// A wavy grid of triangles, 250 squares wide, in flat arrays.
struct RefinementGrid
{
    std::vector<float> positions;      ///< 3 of each vertex
    std::vector<unsigned int> corners; ///< 3 of each triangle
};

/// `triangles` must be a multiple of 500.
RefinementGrid makeRefinementGrid(std::int64_t triangles);

/// 62,500 and 250,000 triangles to be refined once.
inline void refinementSizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(62500)->Arg(250000)->Iterations(1)->Unit(benchmark::kMillisecond);
}
} // namespace velmoran::bench
