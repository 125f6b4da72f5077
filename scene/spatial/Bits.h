#pragma once

namespace velmoran::scene
{
// The number of a bit that is set; at least one is.

inline unsigned int lowestBit(unsigned int bits)
{
    return static_cast<unsigned int>(__builtin_ctz(bits));
}

inline unsigned int highestBit(unsigned int bits)
{
    return 31U - static_cast<unsigned int>(__builtin_clz(bits));
}
} // namespace velmoran::scene
