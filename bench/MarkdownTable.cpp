#include "bench/MarkdownTable.h"

#include <algorithm>
#include <ostream>

namespace velmoran::bench
{
namespace
{
std::string afterSlash(const std::string& name)
{
    return name.substr(name.find('/') + 1);
}

bool isLimit(const RatioRow& row)
{
    return afterSlash(row.heldAgainst).rfind("limit", 0) == 0;
}

/// The row that holds the same operation against its limit; null when there is none.
const RatioRow* limitRowOf(const RatioRow& row)
{
    const std::vector<RatioRow>& rows = ratioRows();
    const std::string ours = row.ours;
    const auto found =
        std::find_if(rows.begin(), rows.end(),
                     [&](const RatioRow& other)
                     { return isLimit(other) && other.size == row.size && other.ours == ours; });
    return found == rows.end() ? nullptr : &*found;
}

/// Whether another row of the same operation and size has a peer, so that a line of its own for
/// the limit would say nothing new.
bool hasPeer(const RatioRow& limit, const RunResults& results)
{
    const std::vector<RatioRow>& rows = ratioRows();
    const std::string ours = limit.ours;
    return std::any_of(rows.begin(), rows.end(),
                       [&](const RatioRow& row)
                       {
                           return !isLimit(row) && row.size == limit.size && row.ours == ours &&
                                  results.find(row.heldAgainst, row.size) != nullptr;
                       });
}

std::string describe(const Ratio& ratio)
{
    return format(ratio.medians, "%.3g") + format(ratio.lowest, " (%.3g") +
           format(ratio.highest, "–%.3g)");
}

/// "2 processors at 2.5 GHz; caches: 32 KiB Data L1 and so on; GCC 12.2.0".
void printMachine(std::ostream& out)
{
    const benchmark::CPUInfo& processor = benchmark::CPUInfo::Get();
    out << processor.num_cpus << " processors at "
        << format(processor.cycles_per_second / 1e9, "%.3g") << " GHz; caches:";
    const char* separator = " ";
    for (const benchmark::CPUInfo::CacheInfo& cache : processor.caches)
    {
        out << separator << "L" << cache.level << " " << cache.type << " " << cache.size / 1024
            << " KiB";
        separator = ", ";
    }
    out << "; compiler " << __VERSION__ << ".\n\n";
}
} // namespace

void MarkdownTable::print(std::ostream& out)
{
    printMachine(out);
    out << "| operation | n | ours | limit | peer | ours : peer | wanted | 4n : n |\n"
           "|---|---|---|---|---|---|---|---|\n";
    for (const RatioRow& row : ratioRows())
    {
        if (!isLimit(row))
        {
            printRow(out, row, limitRowOf(row));
        }
        else if (!hasPeer(row, m_results))
        {
            printRow(out, row, &row);
        }
    }
    for (std::size_t i = 0; i < m_reasons.size(); ++i)
    {
        out << "\n[" << i + 1 << "] " << m_reasons[i] << "\n";
    }
    out << std::flush;
}

void MarkdownTable::printRow(std::ostream& out, const RatioRow& row, const RatioRow* limit)
{
    const Sample* const ours = m_results.find(row.ours, row.size);
    const Sample* const other = m_results.find(row.heldAgainst, row.size);
    if (ours == nullptr || other == nullptr)
    {
        return;
    }
    std::string limitText;
    std::string peer;
    std::string ratioText;
    std::string wanted;
    const Sample* const least =
        limit == nullptr ? nullptr : m_results.find(limit->heldAgainst, row.size);
    if (least != nullptr)
    {
        const double ratio = ratioOf(*ours, *least).medians;
        limitText = formatTime(least->secondsPerItem()) + format(ratio, ", %.3gx");
        wanted += judge("limit", ratio, limit->wantedRatio, *limit);
    }
    if (&row != limit && other != ours)
    {
        const Ratio ratio = ratioOf(*ours, *other);
        peer = afterSlash(row.heldAgainst) + ", " + formatTime(other->secondsPerItem());
        ratioText = describe(ratio);
        wanted += judge("peer", ratio.medians, row.wantedRatio, row);
    }
    const double growth = m_results.growthAt(row.ours, row.size);
    wanted += judge("4n", growth, row.wantedGrowth, row);
    out << "| " << row.ours << " | " << row.size << " | " << formatTime(ours->secondsPerItem())
        << " | " << limitText << " | " << peer << " | " << ratioText << " | " << wanted << " | "
        << (growth != 0.0 ? format(growth, "%.3g") : "") << " |\n";
}

/// "" when nothing is wanted. Numbers the row's reason when it is missed.
std::string MarkdownTable::judge(const char* what, double value, double wanted, const RatioRow& row)
{
    if (wanted == 0.0 || value == 0.0)
    {
        return "";
    }
    const std::string text = what + format(wanted, " ≤ %g");
    if (value <= wanted)
    {
        return text + " ";
    }
    const std::string reason = *row.reason == '\0' ? "Not looked into." : row.reason;
    const auto found = std::find(m_reasons.begin(), m_reasons.end(), reason);
    const auto number = found - m_reasons.begin() + 1;
    if (found == m_reasons.end())
    {
        m_reasons.push_back(reason);
    }
    return text + " **missed** [" + std::to_string(number) + "] ";
}
} // namespace velmoran::bench
