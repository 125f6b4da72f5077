#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

namespace velmoran::bench
{
/// Settings of one case: sizes `Size` and four times that, one round each (ask for
/// repetitions to get more).
///
/// A round is long enough to be timed alone; `Rounds` joins short ones.
template <std::int64_t Size, std::int64_t Rounds = 1>
void atNAnd4N(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(Size)->Arg(4 * Size)->Iterations(Rounds)->Unit(benchmark::kMillisecond);
}

/// Notes that each round did `items` of what the ratios count.
inline void countItems(benchmark::State& state, std::int64_t items)
{
    state.SetItemsProcessed(state.iterations() * items);
}

/// Fails a case whose result is not what the others get.
inline void require(benchmark::State& state, bool holds, const char* what)
{
    if (!holds)
    {
        state.SkipWithError(what);
    }
}
} // namespace velmoran::bench
