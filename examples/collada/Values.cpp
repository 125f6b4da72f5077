#include "examples/collada/Values.h"

#include "examples/collada/Numbers.h"

#include <algorithm>
#include <limits>

namespace velmoran::examples::collada
{
namespace
{
[[noreturn]] void failAtWord(const Document& document, const pugi::xml_node& element,
                             std::size_t index, std::string_view word, const char* expected)
{
    document.fail(element, "value " + std::to_string(index + 1) + ", " + quote(word) + ", is not " +
                               expected);
}

/// Room for the values of an element: what its count says, but not more than a text
/// of that length can hold.
std::size_t getRoom(const pugi::xml_node& element, std::string_view text)
{
    const std::size_t most = text.size() / 2 + 1;
    const unsigned long long count = element.attribute("count").as_ullong(most);
    return std::min(most, static_cast<std::size_t>(count));
}

void checkCount(const Document& document, const pugi::xml_node& element, std::size_t actual)
{
    const std::optional<std::uint64_t> count = readCount(document, element, "count");
    if (count && *count != actual)
    {
        document.fail(element, "its count is " + std::to_string(*count) + ", but it holds " +
                                   std::to_string(actual) + " values");
    }
}

std::vector<float> parseFloats(const Document& document, const pugi::xml_node& element)
{
    const bool isBool = std::string_view(element.name()) == "bool_array";
    std::string storage;
    const std::string_view text = getText(element, storage);
    std::vector<float> values;
    values.reserve(getRoom(element, text));
    Words words(text);
    std::string_view word;
    while (words.next(word))
    {
        float value = 0.0F;
        if (!(isBool ? parseBool(word, value) : parseFloat(word, value)))
        {
            failAtWord(document, element, values.size(), word, isBool ? "a boolean" : "a number");
        }
        values.push_back(value);
    }
    return values;
}
} // namespace

std::vector<float> readFloats(const Document& document, const pugi::xml_node& element)
{
    std::vector<float> values = parseFloats(document, element);
    checkCount(document, element, values.size());
    return values;
}

std::vector<float> readFloats(const Document& document, const pugi::xml_node& element,
                              std::size_t expected)
{
    std::vector<float> values = parseFloats(document, element);
    if (values.size() != expected)
    {
        document.fail(element, "it holds " + std::to_string(values.size()) +
                                   " numbers instead of " + std::to_string(expected));
    }
    return values;
}

float readFloat(const Document& document, const pugi::xml_node& element, float fallback)
{
    return element ? readFloats(document, element, 1)[0] : fallback;
}

bool readBool(const Document& document, const pugi::xml_node& element, bool fallback)
{
    if (!element)
    {
        return fallback;
    }
    const std::string word = getTrimmedText(element);
    float value = 0.0F;
    if (!parseBool(word, value))
    {
        document.fail(element, quote(word) + " is not a boolean");
    }
    return value != 0.0F;
}

std::vector<std::string> readWords(const Document& document, const pugi::xml_node& element)
{
    std::string storage;
    Words words(getText(element, storage));
    std::vector<std::string> values;
    std::string_view word;
    while (words.next(word))
    {
        values.emplace_back(word);
    }
    checkCount(document, element, values.size());
    return values;
}

void readIntegers(const Document& document, const pugi::xml_node& element, std::int32_t minimum,
                  std::vector<std::int32_t>& numbers)
{
    std::string storage;
    Words words(getText(element, storage));
    std::string_view word;
    for (std::size_t i = 0; words.next(word); ++i)
    {
        std::int64_t value = 0;
        if (!parseInteger(word, value) || value > std::numeric_limits<std::int32_t>::max())
        {
            failAtWord(document, element, i, word, "an index");
        }
        if (value < minimum)
        {
            failAtWord(document, element, i, word,
                       minimum < 0 ? "an index from -1 on" : "an index: it is negative");
        }
        numbers.push_back(static_cast<std::int32_t>(value));
    }
}

std::optional<std::uint64_t> readCount(const Document& document, const pugi::xml_node& element,
                                       const char* attribute)
{
    const pugi::xml_attribute found = element.attribute(attribute);
    if (!found)
    {
        return std::nullopt;
    }
    std::int64_t count = 0;
    Words words(found.value());
    std::string_view word;
    std::string_view more;
    if (!words.next(word) || words.next(more) || !parseInteger(word, count) || count < 0)
    {
        document.fail(element, std::string("the attribute ") + attribute + "=" +
                                   quote(found.value()) + " is not a count");
    }
    return static_cast<std::uint64_t>(count);
}

std::uint64_t requireCount(const Document& document, const pugi::xml_node& element,
                           const char* attribute)
{
    const std::optional<std::uint64_t> count = readCount(document, element, attribute);
    if (!count)
    {
        document.fail(element, std::string("the attribute ") + attribute + " is missing");
    }
    return *count;
}
} // namespace velmoran::examples::collada
