#pragma once

#include "scene/Forward.h"

#include <cstddef>

namespace velmoran::scene
{
// Elements lie all over the memory. These fetch parts of one before it is its turn.

/// How many elements ahead that pays.
constexpr std::size_t FETCH_AHEAD = 12;

inline const char* addressOf(const IPrimitivePtr& element)
{
    return reinterpret_cast<const char*>(element.get());
}

/// What counts the users, which make_shared puts before the object.
inline void prefetchCount(const IPrimitivePtr& element)
{
    __builtin_prefetch(addressOf(element) - 24, 1);
}

/// The positions that a triangle keeps.
inline void prefetchPositions(const IPrimitivePtr& element)
{
    __builtin_prefetch(addressOf(element));
    __builtin_prefetch(addressOf(element) + 64);
}
} // namespace velmoran::scene
