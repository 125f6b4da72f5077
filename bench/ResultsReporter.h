#pragma once

#include "bench/RunResults.h"

namespace velmoran::bench
{
/// Prints the cases as they are done, their medians when they are repeated, and keeps what
/// they took.
class ResultsReporter : public benchmark::ConsoleReporter
{
public:
    ResultsReporter() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override
    {
        std::vector<Run> shown;
        for (const Run& run : runs)
        {
            const bool isSingle = run.run_type == Run::RT_Iteration;
            if (isSingle ? run.repetitions <= 1 : run.aggregate_name == "median")
            {
                shown.push_back(run);
            }
            m_results.add(run);
        }
        ConsoleReporter::ReportRuns(shown);
    }

    const RunResults& results() const { return m_results; }

private:
    RunResults m_results;
};
} // namespace velmoran::bench
