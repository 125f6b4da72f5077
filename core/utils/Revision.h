#pragma once

#include "core/Export.h"

#include <atomic>
#include <cstdint>

namespace velmoran::core::utils
{
/// Counts the changes of one object, for readers that keep what they made of it.
///
/// A reader watches the revisions of what it has read and remembers their counts. As
/// long as `getWatchedChanges` stands still, none of them has moved on; else it compares
/// the counts. An object that nobody watches pays for a change with one addition.
/// Copies: a copy counts its own changes from 0; being assigned to is a change.
/// Threads: `moveOn` where the object may be changed, `watch` and `getCount` where it may
///     be read, `getWatchedChanges` anywhere.
class VELMORAN_CORE_EXPORT Revision
{
public:
    Revision() = default;

    /// Starts at 0, whatever the other one counts.
    Revision(const Revision&) : Revision() {}
    Revision& operator=(const Revision& other)
    {
        if (this != &other)
        {
            moveOn();
        }
        return *this;
    }

    /// Notes a change of the object.
    void moveOn()
    {
        ++m_count;
        if (m_watched.load(std::memory_order_relaxed))
        {
            noteWatchedChange();
        }
    }

    /// Lets changes move `getWatchedChanges` on from now on, and answers `getCount`.
    std::uint64_t watch() const
    {
        m_watched.store(true, std::memory_order_relaxed);
        return m_count;
    }

    /// The number of changes so far.
    std::uint64_t getCount() const { return m_count; }

    /// The number of changes of watched objects in this process.
    static std::uint64_t getWatchedChanges();

private:
    static void noteWatchedChange();

    std::uint64_t m_count = 0;
    mutable std::atomic<bool> m_watched{false}; ///< for good: watchers come back
};
} // namespace velmoran::core::utils
