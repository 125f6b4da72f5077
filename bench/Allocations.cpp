#include "bench/Allocations.h"

#include <cstdlib>
#include <new>

namespace
{
thread_local std::uint64_t t_allocations = 0;
} // namespace

namespace velmoran::bench
{
std::uint64_t countAllocations()
{
    return t_allocations;
}
} // namespace velmoran::bench

// The forms for arrays and those that do not throw end up in these, too.

void* operator new(std::size_t size)
{
    ++t_allocations;
    void* const memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
