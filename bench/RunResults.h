#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace velmoran::bench
{
/// What the repetitions of one case took, in time of the calling thread's processor.
struct Sample
{
    std::vector<double> roundSeconds; ///< of each repetition
    double itemsPerRound = 1.0;       ///< calls, nodes, look-ups: what `countItems` was told
    std::map<std::string, double> counters;

    /// Median of the repetitions.
    double seconds() const;
    double secondsPerItem() const;
};

/// The ratio of two cases by the time for one item.
struct Ratio
{
    double medians; ///< of the medians
    double lowest;  ///< of single repetitions
    double highest;
};

Ratio ratioOf(const Sample& ours, const Sample& other);

/// What the cases of a run took. Cases that failed are left out.
class RunResults
{
public:
    void add(const benchmark::BenchmarkReporter::Run& run);

    /// Null when there is no such case.
    const Sample* find(const std::string& name, std::int64_t size) const;

    /// How many times longer rounds of 4 * size take than those of size; when there is no
    /// case four times as large, than those of a fourth of it. 0 when there is neither.
    double growthAt(const std::string& name, std::int64_t size) const;

    /// A line for each case: its name up to the first "/", the rest, the size and the seconds
    /// for one item, separated by tabs.
    void write(std::ostream& out) const;

private:
    std::map<std::pair<std::string, std::int64_t>, Sample> m_samples; ///< by name and size
};

/// A number or a time in three digits, with its unit.
std::string format(double value, const char* pattern);
std::string formatTime(double seconds);
} // namespace velmoran::bench
