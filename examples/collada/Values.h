#pragma once

#include "examples/collada/Document.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmoran::examples::collada
{
// Lists and numbers of a document. Each fails with the element, the place in the list
// and the word that is wrong. Memory grows with the words that are there, never with
// what a count says.

/// Floats; "true" and "false" in a `<bool_array>`. Fails unless there are as many as
/// the element's attribute "count", if any, says.
std::vector<float> readFloats(const Document& document, const pugi::xml_node& element);

/// Exactly `expected` floats.
std::vector<float> readFloats(const Document& document, const pugi::xml_node& element,
                              std::size_t expected);

/// One float; `fallback` when the element is missing.
float readFloat(const Document& document, const pugi::xml_node& element, float fallback);

/// A boolean; `fallback` when the element is missing.
bool readBool(const Document& document, const pugi::xml_node& element, bool fallback);

/// Words; as many as the attribute "count", if any, says.
std::vector<std::string> readWords(const Document& document, const pugi::xml_node& element);

/// Appends whole numbers of at least `minimum` and at most 2^31 - 1 to `numbers`.
void readIntegers(const Document& document, const pugi::xml_node& element, std::int32_t minimum,
                  std::vector<std::int32_t>& numbers);

/// The number in an attribute; nothing when it is missing. Fails when it is anything
/// but a whole number from 0 on.
std::optional<std::uint64_t> readCount(const Document& document, const pugi::xml_node& element,
                                       const char* attribute);

/// The same; fails when the attribute is missing.
std::uint64_t requireCount(const Document& document, const pugi::xml_node& element,
                           const char* attribute);
} // namespace velmoran::examples::collada
