#pragma once

#include <Eigen/Core>

#include <cstddef>
#include <string>
#include <vector>

namespace velmoran::examples
{
/// The shortest text that reads back to the same float; the same in every locale.
std::string floatText(float value);

/// `value` rounded to four digits behind the point, which suffices for a look.
std::string shortNumber(double value);

/// A time for people, e.g. "1.5 s" or "0.25 ms".
std::string durationText(double seconds);

/// "(1, 2, 3)", each number as by `shortNumber`.
std::string pointText(const Eigen::Vector3d& point);

/// `text` with control characters replaced by "?", so that it stays on its line.
std::string onOneLine(const std::string& text);

/// `text` in double quotes, on one line.
std::string quoted(const std::string& text);

/// "1 camera", "2 cameras".
std::string countText(std::size_t count, const std::string& singular, const std::string& plural);

/// `text` filled up with blanks to `width`, at its right or left.
std::string padRight(const std::string& text, std::size_t width);
std::string padLeft(const std::string& text, std::size_t width);

/// `names` joined by ", " in lines of at most about 100 characters, all but the first
/// indented by `indent`; after `maxLines` lines "... and N more" stands for the rest.
std::string wrapNames(const std::vector<std::string>& names, std::size_t indent,
                      std::size_t maxLines);
} // namespace velmoran::examples
