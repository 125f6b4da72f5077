#pragma once

#include <cstdint>
#include <string_view>

namespace velmoran::examples::collada
{
/// Walks the words of a list, which blanks, tabs and line ends separate.
class Words
{
public:
    /// `text` must outlive this object and the words it gives out.
    explicit Words(std::string_view text);

    /// Puts the next word into `word`; false at the end.
    bool next(std::string_view& word);

private:
    std::string_view m_rest;
};

// Each of these reads a whole word, whatever the locale, and answers false with the
// result untouched when the word is anything else.

/// A decimal number, also with a leading "+", or "NaN", "INF", "-INF". What is nearer
/// to zero than a float can tell becomes zero; what is larger than a float is refused.
bool parseFloat(std::string_view word, float& result);

/// A whole number of 64 bits, also with a sign.
bool parseInteger(std::string_view word, std::int64_t& result);

/// "true", "false", "1" or "0", as 1 or 0.
bool parseBool(std::string_view word, float& result);
} // namespace velmoran::examples::collada
