#include "examples/collada/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace velmoran::examples::collada
{
namespace
{
bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Takes one leading "+" away, but not from "+-1".
std::string_view withoutPlus(std::string_view word)
{
    const bool plus = word.size() > 1 && word[0] == '+' && word[1] != '-' && word[1] != '+';
    return plus ? word.substr(1) : word;
}

bool parseSpecial(std::string_view word, float& result)
{
    constexpr float INF = std::numeric_limits<float>::infinity();
    if (word == "NaN")
    {
        result = std::numeric_limits<float>::quiet_NaN();
        return true;
    }
    if (word == "INF" || word == "-INF")
    {
        result = word[0] == '-' ? -INF : INF;
        return true;
    }
    return false;
}

/// Whether a number that not even a double holds is too small rather than too large.
bool isTiny(std::string_view word)
{
    const std::size_t exponent = word.find_first_of("eE");
    if (exponent == std::string_view::npos)
    {
        const std::size_t first = word.find_first_not_of("-0");
        return first != std::string_view::npos && word[first] == '.';
    }
    return exponent + 1 < word.size() && word[exponent + 1] == '-';
}

/// For what lies outside the range of normal floats.
bool parseExtreme(std::string_view word, float& result)
{
    double wide = 0.0;
    const char* const end = word.data() + word.size();
    const std::from_chars_result read = std::from_chars(word.data(), end, wide);
    if (read.ptr != end)
    {
        return false;
    }
    if (read.ec == std::errc::result_out_of_range)
    {
        wide = 0.0;
        if (!isTiny(word))
        {
            return false;
        }
    }
    if (std::abs(wide) > static_cast<double>(std::numeric_limits<float>::max()))
    {
        return false;
    }
    result = static_cast<float>(wide);
    return true;
}
} // namespace

Words::Words(std::string_view text) : m_rest(text) {}

bool Words::next(std::string_view& word)
{
    std::size_t begin = 0;
    while (begin < m_rest.size() && isBlank(m_rest[begin]))
    {
        ++begin;
    }
    std::size_t end = begin;
    while (end < m_rest.size() && !isBlank(m_rest[end]))
    {
        ++end;
    }
    word = m_rest.substr(begin, end - begin);
    m_rest.remove_prefix(end);
    return !word.empty();
}

bool parseFloat(std::string_view word, float& result)
{
    word = withoutPlus(word);
    const std::size_t first = !word.empty() && word[0] == '-' ? 1 : 0;
    // Names of special values have other spellings here than in XML.
    if (first >= word.size() || !(isDigit(word[first]) || word[first] == '.'))
    {
        return parseSpecial(word, result);
    }
    float value = 0.0F;
    const char* const end = word.data() + word.size();
    const std::from_chars_result read = std::from_chars(word.data(), end, value);
    if (read.ec == std::errc::result_out_of_range)
    {
        return parseExtreme(word, result);
    }
    if (read.ec != std::errc() || read.ptr != end)
    {
        return false;
    }
    result = value;
    return true;
}

bool parseInteger(std::string_view word, std::int64_t& result)
{
    word = withoutPlus(word);
    std::int64_t value = 0;
    const char* const end = word.data() + word.size();
    const std::from_chars_result read = std::from_chars(word.data(), end, value);
    if (read.ec != std::errc() || read.ptr != end)
    {
        return false;
    }
    result = value;
    return true;
}

bool parseBool(std::string_view word, float& result)
{
    const bool isTrue = word == "true" || word == "1";
    if (!isTrue && word != "false" && word != "0")
    {
        return false;
    }
    result = isTrue ? 1.0F : 0.0F;
    return true;
}
} // namespace velmoran::examples::collada
