#pragma once

#include "bench/RatioRows.h"
#include "bench/RunResults.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace velmoran::bench
{
/// The ratios of a run as a table in Markdown: a line for each operation and peer, with the
/// limit beside it, and below it the reasons for what is missed.
///
/// Rows whose cases were not run are left out.
class MarkdownTable
{
public:
    /// `results` must outlive the table.
    explicit MarkdownTable(const RunResults& results) : m_results(results) {}

    /// Tells of processor, caches and compiler, too.
    void print(std::ostream& out);

private:
    void printRow(std::ostream& out, const RatioRow& row, const RatioRow* limit);
    std::string judge(const char* what, double value, double wanted, const RatioRow& row);

    const RunResults& m_results;
    std::vector<std::string> m_reasons; ///< in the order of their numbers, from 1
};
} // namespace velmoran::bench
