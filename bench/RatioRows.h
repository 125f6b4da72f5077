#pragma once

#include <cstdint>
#include <vector>

namespace velmoran::bench
{
/// An operation of ours and what it is held against: a plain loop over flat arrays ("limit"),
/// another library or way, or another case of ours.
struct RatioRow
{
    const char* ours;
    const char* heldAgainst;
    std::int64_t size;
    double wantedRatio;      ///< at most; 0: for information
    double wantedGrowth;     ///< at most, over four times the size; 0: for information
    const char* reason = ""; ///< why it is missed, where it is
};

/// All rows in the order in which tables show them.
const std::vector<RatioRow>& ratioRows();
} // namespace velmoran::bench
