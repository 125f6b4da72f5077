#pragma once

#include "scene/Forward.h"
#include "scene/geometry/StreamMapping.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace velmoran::scene
{
/// Puts `stream` in the place of `current` in a list of streams, in which it then stands
/// once: at its first place. Returns false when `current` is not in the list.
inline bool replaceEntry(std::vector<StreamPtr>& streams, const StreamPtr& current,
                         const StreamPtr& stream)
{
    if (std::find(streams.begin(), streams.end(), current) == streams.end())
    {
        return false;
    }
    std::replace(streams.begin(), streams.end(), current, stream);
    const auto first = std::find(streams.begin(), streams.end(), stream);
    streams.erase(std::remove(std::next(first), streams.end(), stream), streams.end());
    return true;
}

/// Puts `stream` in the place of `current` in a list of inputs.
inline void replaceInMappings(std::vector<StreamMapping>& mappings, const StreamPtr& current,
                              const StreamPtr& stream)
{
    for (StreamMapping& mapping : mappings)
    {
        if (mapping.getStream() == current)
        {
            mapping.setStream(stream);
        }
    }
}
} // namespace velmoran::scene
