#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace velmoran::core::utils
{
/// Takes back what an operation did so far when an exception, such as `std::bad_alloc`,
/// ends it before `keep`.
///
/// `undo` allocates nothing. What it calls may tell listeners: an exception from there
/// ends the undoing, not the program.
template <typename Undo>
class UndoUnlessKept
{
public:
    /// `undo` is called without arguments.
    explicit UndoUnlessKept(Undo undo) : m_undo(std::move(undo)) {}

    ~UndoUnlessKept()
    {
        if (m_isKept)
        {
            return;
        }
        try
        {
            m_undo();
        }
        catch (...) // the exception that brought us here is the one to tell
        {
        }
    }

    UndoUnlessKept(const UndoUnlessKept&) = delete;
    UndoUnlessKept& operator=(const UndoUnlessKept&) = delete;

    /// What was done stays.
    void keep() { m_isKept = true; }

private:
    Undo m_undo;
    bool m_isKept = false;
};

/// Lets the next `count` insertions into `list` succeed without memory. In a row of calls
/// the list grows as it does by itself.
template <typename T>
void makeRoom(std::vector<T>& list, std::size_t count = 1)
{
    if (list.capacity() - list.size() < count)
    {
        list.reserve(std::max(list.size() + count, 2 * list.size()));
    }
}
} // namespace velmoran::core::utils
