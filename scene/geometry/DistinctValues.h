#pragma once

#include "scene/Forward.h"

#include <cstddef>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// Values in a stream without duplicates, and where each of them is.
struct DistinctValues
{
    /// Inserts `values`, `width` floats each, one after the other into a new stream. Leaves no
    /// table behind in the stream, other than single insertions do.
    DistinctValues(const std::string& id, std::size_t width, std::vector<float> values);

    /// The tuple of value `index`.
    int getTuple(std::size_t index) const
    {
        return tuples.empty() ? static_cast<int>(index) : tuples[index];
    }

    StreamPtr stream;
    std::vector<int> tuples; ///< of each value; none when all are distinct: value i is tuple i
};
} // namespace velmoran::scene
