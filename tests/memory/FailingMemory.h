#pragma once

namespace velmoran::scene
{
/// Lets an allocation of the calling thread fail for as long as it lives, by `std::bad_alloc`.
///
/// The program that has this replaces the global `operator new` by one on `malloc`, which
/// the sanitizers watch as well.
class FailingMemory
{
public:
    enum Extent
    {
        ONE,      ///< the allocation `number`
        THE_REST, ///< that one and all after it
        NONE      ///< only counts
    };

    /// Counts from 1.
    FailingMemory(long number, Extent extent);
    ~FailingMemory();

    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    /// Whether so many allocations were asked for.
    bool wasReached() const;

private:
    long m_number;
};
} // namespace velmoran::scene
