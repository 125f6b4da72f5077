#pragma once

#include "scene/geometry/Stream.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace velmoran::scene
{
/// Adds to the count of a stream, which may be any number, as far as an int goes.
inline void addToCount(Stream& stream, std::size_t added)
{
    using Limits = std::numeric_limits<int>;
    const auto most = static_cast<std::size_t>(Limits::max());
    const auto sum = std::int64_t(stream.getCount()) + std::int64_t(std::min(added, most));
    stream.setCount(static_cast<int>(std::min<std::int64_t>(sum, Limits::max())));
}

/// Takes one from the count of a stream; what is below 0 becomes 0.
inline void takeFromCount(Stream& stream)
{
    stream.setCount(std::max(stream.getCount(), 1) - 1);
}
} // namespace velmoran::scene
