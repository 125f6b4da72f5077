#pragma once

#include <cstdint>

namespace velmoran::scene
{
/// The axis of a scene that points up.
enum UpAxis : std::int32_t
{
    X_UP = 0,
    Y_UP = 1,
    Z_UP = 2
};
} // namespace velmoran::scene
