#include "bench/RunResults.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ostream>

namespace velmoran::bench
{
namespace
{
double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}
} // namespace

double Sample::seconds() const
{
    return medianOf(roundSeconds);
}

double Sample::secondsPerItem() const
{
    return seconds() / itemsPerRound;
}

Ratio ratioOf(const Sample& ours, const Sample& other)
{
    const double all = ours.secondsPerItem() / other.secondsPerItem();
    Ratio ratio = {all, all, all};
    const double scale = other.itemsPerRound / ours.itemsPerRound;
    for (std::size_t i = 0; i < ours.roundSeconds.size() && i < other.roundSeconds.size(); ++i)
    {
        const double single = scale * ours.roundSeconds[i] / other.roundSeconds[i];
        ratio.lowest = std::min(ratio.lowest, single);
        ratio.highest = std::max(ratio.highest, single);
    }
    return ratio;
}

void RunResults::add(const benchmark::BenchmarkReporter::Run& run)
{
    using Run = benchmark::BenchmarkReporter::Run;
    if (run.run_type != Run::RT_Iteration || run.error_occurred || run.iterations == 0)
    {
        return;
    }
    const std::int64_t size = std::atoll(run.run_name.args.c_str());
    Sample& sample = m_samples[{run.run_name.function_name, size}];
    const double seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
    sample.roundSeconds.push_back(seconds);
    for (const auto& [name, counter] : run.counters)
    {
        sample.counters[name] = counter.value;
    }
    const auto rate = run.counters.find("items_per_second");
    if (rate != run.counters.end())
    {
        sample.itemsPerRound = rate->second.value * seconds;
    }
}

const Sample* RunResults::find(const std::string& name, std::int64_t size) const
{
    const auto found = m_samples.find({name, size});
    return found == m_samples.end() ? nullptr : &found->second;
}

double RunResults::growthAt(const std::string& name, std::int64_t size) const
{
    const Sample* small = find(name, size);
    const Sample* large = find(name, 4 * size);
    if (large == nullptr)
    {
        large = small;
        small = find(name, size / 4);
    }
    return small == nullptr || large == nullptr ? 0.0 : large->seconds() / small->seconds();
}

void RunResults::write(std::ostream& out) const
{
    for (const auto& [key, sample] : m_samples)
    {
        const std::size_t end = key.first.find('/');
        out << key.first.substr(0, end) << '\t' << key.first.substr(end + 1) << '\t' << key.second
            << '\t' << sample.secondsPerItem() << '\n';
    }
}

std::string format(double value, const char* pattern)
{
    char text[32];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}

std::string formatTime(double seconds)
{
    return seconds >= 1e-3   ? format(seconds * 1e3, "%.3g ms")
           : seconds >= 1e-6 ? format(seconds * 1e6, "%.3g us")
                             : format(seconds * 1e9, "%.3g ns");
}
} // namespace velmoran::bench
