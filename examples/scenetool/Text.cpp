#include "examples/scenetool/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace velmoran::examples
{
namespace
{
constexpr std::size_t LINE_WIDTH = 100;
}

std::string floatText(float value)
{
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return std::string(buffer.data(), end.ptr);
}

std::string shortNumber(double value)
{
    const double rounded = std::round(value * 1e4) / 1e4;
    return floatText(static_cast<float>(rounded) + 0.0F);
}

std::string durationText(double seconds)
{
    return seconds < 1.0 ? shortNumber(seconds * 1e3) + " ms" : shortNumber(seconds) + " s";
}

std::string pointText(const Eigen::Vector3d& point)
{
    return "(" + shortNumber(point.x()) + ", " + shortNumber(point.y()) + ", " +
           shortNumber(point.z()) + ")";
}

std::string onOneLine(const std::string& text)
{
    std::string result = text;
    std::replace_if(
        result.begin(), result.end(),
        [](char c)
        {
            const auto code = static_cast<unsigned char>(c);
            return code < 0x20 || code == 0x7f;
        },
        '?');
    return result;
}

std::string quoted(const std::string& text)
{
    return '"' + onOneLine(text) + '"';
}

std::string countText(std::size_t count, const std::string& singular, const std::string& plural)
{
    return std::to_string(count) + ' ' + (count == 1 ? singular : plural);
}

std::string padRight(const std::string& text, std::size_t width)
{
    return text + std::string(width - std::min(width, text.size()), ' ');
}

std::string padLeft(const std::string& text, std::size_t width)
{
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string wrapNames(const std::vector<std::string>& names, std::size_t indent,
                      std::size_t maxLines)
{
    std::string text;
    std::size_t lines = 1;
    std::size_t column = indent;
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        const std::string name = onOneLine(names[i]) + (i + 1 < names.size() ? "," : "");
        if (column > indent && column + 1 + name.size() > LINE_WIDTH)
        {
            text += '\n' + std::string(indent, ' ');
            if (++lines > maxLines)
            {
                return text + "... and " + std::to_string(names.size() - i) + " more";
            }
            column = indent;
        }
        const bool startsLine = column == indent;
        text += (startsLine ? "" : " ") + name;
        column += name.size() + (startsLine ? 0 : 1);
    }
    return text;
}
} // namespace velmoran::examples
