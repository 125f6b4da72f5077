#pragma once

#include "bench/RunResults.h"

#include <iosfwd>

namespace velmoran::bench
{
/// Prints the ratios of ours to what each case is held against and the growth from n to 4n, as
/// far as their cases were run. A ratio compares the time for one item (a call, a node, a
/// look-up), median of the repetitions.
void printRatios(std::ostream& out, const RunResults& results);
} // namespace velmoran::bench
