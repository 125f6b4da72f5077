#pragma once

#include "core/utils/AllOrNothing.h"

#include <boost/shared_ptr.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

namespace velmoran::scene
{
/// A list of shared elements in insertion order, searched linearly: the shape of
/// every library of a scene. Holds no empty handles.
template <typename T>
class Library
{
public:
    /// Shares an element.
    using Handle = boost::shared_ptr<T>;

    /// The elements in order.
    using Items = std::vector<Handle>;

    /// The items that `install` can take: those without the empty handles.
    static Items withoutEmpty(const Items& items)
    {
        Items kept;
        kept.reserve(items.size());
        std::copy_if(items.begin(), items.end(), std::back_inserter(kept),
                     [](const Handle& item) { return static_cast<bool>(item); });
        return kept;
    }

    /// Replaces the content. Needs no memory.
    void install(Items items) { m_items.swap(items); }

    /// Lets the next `count` additions succeed without memory.
    void makeRoom(std::size_t count = 1) { core::utils::makeRoom(m_items, count); }

    /// Removes all items behind the first `count`.
    void cutTo(std::size_t count)
    {
        if (count < m_items.size())
        {
            m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(count), m_items.end());
        }
    }

    /// Appends `item`; an empty handle is ignored.
    void add(const Handle& item)
    {
        if (item)
        {
            m_items.push_back(item);
        }
    }

    /// The first item for which `matches(item)` holds; empty when there is none.
    template <typename Predicate>
    Handle firstMatch(Predicate matches) const
    {
        const auto found = std::find_if(m_items.begin(), m_items.end(),
                                        [&](const Handle& item) { return matches(*item); });
        return found == m_items.end() ? Handle() : *found;
    }

    /// The first item whose getter answers `value`.
    template <typename Getter, typename Value>
    Handle firstWith(Getter getter, const Value& value) const
    {
        return firstMatch([&](const T& item) { return (item.*getter)() == value; });
    }

    /// Item `index`; empty when there is none.
    Handle at(std::size_t index) const
    {
        return index < m_items.size() ? m_items[index] : Handle();
    }

    /// Removes every item for which `matches(item)` holds.
    template <typename Predicate>
    void removeAll(Predicate matches)
    {
        m_items.erase(std::remove_if(m_items.begin(), m_items.end(),
                                     [&](const Handle& item) { return matches(*item); }),
                      m_items.end());
    }

    /// Whether this very item is listed.
    bool contains(const Handle& item) const
    {
        return std::find(m_items.begin(), m_items.end(), item) != m_items.end();
    }

    /// Removes item `index`; nothing when there is none.
    void removeAt(std::size_t index)
    {
        if (index < m_items.size())
        {
            m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(index));
        }
    }

    /// Lets go of all items.
    void clear() { m_items.clear(); }

    /// The number of items.
    unsigned int count() const { return static_cast<unsigned int>(m_items.size()); }

    /// The items; valid until the library changes.
    const Items& items() const { return m_items; }

private:
    Items m_items;
};
} // namespace velmoran::scene
