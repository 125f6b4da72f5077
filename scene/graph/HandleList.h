#pragma once

#include <boost/shared_ptr.hpp>

#include <vector>

namespace velmoran::scene
{
/// Entry `index` of a list; an empty handle when there is none.
template <typename T>
boost::shared_ptr<T> entryAt(const std::vector<boost::shared_ptr<T>>& list, unsigned int index)
{
    return index < list.size() ? list[index] : boost::shared_ptr<T>();
}

/// Appends `entry` unless it is empty.
template <typename T>
void append(std::vector<boost::shared_ptr<T>>& list, const boost::shared_ptr<T>& entry)
{
    if (entry)
    {
        list.push_back(entry);
    }
}
} // namespace velmoran::scene
