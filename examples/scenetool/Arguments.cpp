#include "examples/scenetool/Arguments.h"

#include "examples/scenetool/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <system_error>

namespace velmoran::examples
{
std::optional<double> parseNumber(const std::string& text)
{
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || last != end || !std::isfinite(value))
    {
        return std::nullopt;
    }
    return value;
}

std::optional<std::vector<double>> parseNumbers(const std::string& text, std::size_t count)
{
    std::vector<double> numbers;
    std::size_t begin = 0;
    while (begin <= text.size() && numbers.size() <= count)
    {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::optional<double> number = parseNumber(text.substr(begin, end - begin));
        if (!number)
        {
            return std::nullopt;
        }
        numbers.push_back(*number);
        begin = end + 1;
    }
    return numbers.size() == count ? std::make_optional(numbers) : std::nullopt;
}

void addReading(CLI::App& command, ReadOptions& options)
{
    command.add_flag("--keep-polygons", options.keepPolygons,
                     "Keep polygons as they are instead of splitting them into triangles");
}

CLI::Validator secondsFrom(double least)
{
    constexpr double DAY = 86400.0;
    const auto check = [least](const std::string& text)
    {
        const std::optional<double> value = parseNumber(text);
        const bool fits = value && *value >= least && *value <= DAY;
        return fits ? std::string()
                    : quoted(text) + " is no number of seconds from " + shortNumber(least) +
                          " to " + shortNumber(DAY);
    };
    return CLI::Validator(check, "");
}

void refuseOverwriting(const std::string& input, const std::string& output,
                       const std::string& option)
{
    std::error_code ignored;
    if (!output.empty() && std::filesystem::equivalent(input, output, ignored))
    {
        throw CLI::ValidationError(option, "would write over " + input);
    }
}
} // namespace velmoran::examples
