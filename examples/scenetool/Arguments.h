#pragma once

#include <CLI/CLI.hpp>

#include <optional>
#include <string>

namespace velmoran::examples
{
/// A finite decimal number that is all of `text`.
std::optional<double> parseNumber(const std::string& text);

/// Accepts numbers of seconds, at least `least` and at most a day.
CLI::Validator secondsFrom(double least);

/// Refuses to write over the file that is read; an empty `output` is fine. `option` is what
/// names the output.
void refuseOverwriting(const std::string& input, const std::string& output,
                       const std::string& option = "--obj");
} // namespace velmoran::examples
