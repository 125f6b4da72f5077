#pragma once

#include <cstdint>

namespace velmoran::bench
{
/// How often the calling thread has taken memory from `operator new` so far, in this
/// program and in the libraries that it links.
std::uint64_t countAllocations();
} // namespace velmoran::bench
