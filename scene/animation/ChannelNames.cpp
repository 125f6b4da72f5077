#include "scene/animation/ChannelNames.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <utility>

namespace velmoran::scene
{
namespace
{
constexpr int STEP = 0;
constexpr int LINEAR = 1;

/// The code of `name` in any case, or `other` when the table does not hold it.
template <std::size_t N>
int codeOf(std::string name, const std::pair<const char*, int> (&table)[N], int other)
{
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto* const found = std::find_if(std::begin(table), std::end(table),
                                           [&name](const auto& row) { return name == row.first; });
    return found == std::end(table) ? other : found->second;
}
} // namespace

int interpolationTypeOf(std::string name)
{
    static constexpr std::pair<const char*, int> CODES[] = {{"step", STEP},  {"linear", LINEAR},
                                                            {"bezier", 2},   {"hermite", 3},
                                                            {"cardinal", 4}, {"bspline", 5}};
    return codeOf(std::move(name), CODES, LINEAR);
}

int coordinateIndexOf(std::string name)
{
    static constexpr std::pair<const char*, int> INDICES[] = {
        {"x", 0}, {"y", 1}, {"z", 2}, {"w", 3}, {"angle", 3}};
    return codeOf(std::move(name), INDICES, -1);
}

bool isStep(const std::string& interpolationName)
{
    return interpolationTypeOf(interpolationName) == STEP;
}
} // namespace velmoran::scene
