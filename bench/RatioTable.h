#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace velmoran::bench
{
/// Prints the cases as they are done and, at the end, what they are for: the ratios of
/// ours to what each is held against, and the growth from n to 4n.
///
/// Times are those of the calling thread's processor. A ratio compares the time for one
/// item (a call, a node, a look-up), median of the repetitions.
class RatioTable : public benchmark::ConsoleReporter
{
public:
    RatioTable();

    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    struct Sample
    {
        std::vector<double> roundSeconds; ///< of each repetition
        double itemsPerRound = 1.0;
        std::map<std::string, double> counters;

        double seconds() const;
        double secondsPerItem() const;
    };

    using Key = std::pair<std::string, std::int64_t>; ///< name and size

    const Sample* find(const std::string& name, std::int64_t size) const;
    void printRow(const struct Row& row) const;
    void printAllocations() const;

    std::map<Key, Sample> m_samples;
};
} // namespace velmoran::bench
