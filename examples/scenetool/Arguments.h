#pragma once

#include "examples/collada/ColladaReader.h"

#include <CLI/CLI.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velmoran::examples
{
/// A finite decimal number that is all of `text`.
std::optional<double> parseNumber(const std::string& text);

/// Exactly `count` such numbers, joined by ","; nothing when `text` is anything else.
std::optional<std::vector<double>> parseNumbers(const std::string& text, std::size_t count);

/// Adds the flag "--keep-polygons".
void addReading(CLI::App& command, ReadOptions& options);

/// Accepts numbers of seconds, at least `least` and at most a day.
CLI::Validator secondsFrom(double least);

/// Refuses to write over the file that is read; an empty `output` is fine. `option` is what
/// names the output.
void refuseOverwriting(const std::string& input, const std::string& output,
                       const std::string& option = "--obj");
} // namespace velmoran::examples
