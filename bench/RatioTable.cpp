#include "bench/RatioTable.h"

#include "bench/RatioRows.h"

#include <ostream>

namespace velmoran::bench
{
namespace
{
/// "" when nothing is wanted, else the limit and whether it holds.
std::string judge(double value, double wanted)
{
    return wanted == 0 ? "" : format(wanted, " (<= %g") + (value <= wanted ? ")" : " MISSED)");
}

void printRow(std::ostream& out, const RunResults& results, const RatioRow& row)
{
    const Sample* const ours = results.find(row.ours, row.size);
    const Sample* const other = results.find(row.heldAgainst, row.size);
    if (ours == nullptr || other == nullptr)
    {
        return;
    }
    const Ratio ratio = ratioOf(*ours, *other);
    out << row.ours << " : " << row.heldAgainst << ", " << row.size << "\n    "
        << formatTime(ours->secondsPerItem()) << " : " << formatTime(other->secondsPerItem())
        << " = " << format(ratio.medians, "%.3g") << format(ratio.lowest, " [%.3g")
        << format(ratio.highest, "-%.3g]") << judge(ratio.medians, row.wantedRatio);
    const double growth = results.growthAt(row.ours, row.size);
    if (growth != 0.0)
    {
        out << ", 4n/n " << format(growth, "%.3g") << judge(growth, row.wantedGrowth);
    }
    out << "\n";
}

void printAllocations(std::ostream& out, const RunResults& results)
{
    const Sample* const reading = results.find("triangles/ours, all held", 1000000);
    if (reading == nullptr)
    {
        return;
    }
    const double allocations = reading->counters.at("allocs_per_triangle");
    const double objects = reading->counters.at("objects_per_triangle");
    out << "triangles/ours, all held: " << format(allocations, "%.6g")
        << " allocations per triangle, " << format(objects, "%g") << " objects handed out"
        << judge(allocations, objects) << "\n";
}
} // namespace

void printRatios(std::ostream& out, const RunResults& results)
{
    out << "\nRatios: ours to what it is held against, by the time for one item, with the range "
           "over\nthe repetitions; 4n/n: growth of ours. In brackets what is wanted.\n\n";
    for (const RatioRow& row : ratioRows())
    {
        printRow(out, results, row);
    }
    printAllocations(out, results);
    out << std::flush;
}
} // namespace velmoran::bench
