#include "tests/memory/FailingMemory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace
{
thread_local long t_asked = 0;
thread_local long t_failing = 0; // 0: none
thread_local bool t_failsOn = false;

bool isToFail()
{
    ++t_asked;
    return t_failing != 0 && (t_failsOn ? t_asked >= t_failing : t_asked == t_failing);
}
} // namespace

void* operator new(std::size_t size)
{
    void* const memory = isToFail() ? nullptr : std::malloc(size != 0 ? size : 1);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new[](std::size_t size)
{
    return ::operator new(size);
}

// As temporary buffers of the standard library are asked for.
void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept
{
    return isToFail() ? nullptr : std::malloc(size != 0 ? size : 1);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace velmoran::scene
{
FailingMemory::FailingMemory(long number, Extent extent) : m_number(number)
{
    t_asked = 0;
    t_failsOn = extent == THE_REST;
    t_failing = extent == NONE ? 0 : number;
}

FailingMemory::~FailingMemory()
{
    t_failing = 0;
}

bool FailingMemory::wasReached() const
{
    return t_asked >= m_number;
}
} // namespace velmoran::scene
