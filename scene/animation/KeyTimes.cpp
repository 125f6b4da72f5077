#include "scene/animation/KeyTimes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace velmoran::scene
{
KeyTimes::KeyTimes(std::vector<float> times) : m_times(std::move(times))
{
    m_reach.reserve(m_times.size());
    float greatest = -std::numeric_limits<float>::infinity();
    for (const float time : m_times)
    {
        greatest = time > greatest ? time : greatest; // a NaN reaches nothing
        m_reach.push_back(greatest);
    }
}

bool KeyTimes::find(float time, std::size_t& cursor, Segment& segment) const
{
    if (!isFirstReaching(cursor, time))
    {
        ++cursor;
        if (!isFirstReaching(cursor, time))
        {
            const auto found = std::lower_bound(m_reach.begin(), m_reach.end(), time);
            cursor = static_cast<std::size_t>(found - m_reach.begin());
        }
    }
    if (cursor >= m_times.size())
    {
        return false;
    }
    segment.second = cursor;
    segment.first = cursor == 0 ? 0 : cursor - 1;
    const float start = m_times[segment.first];
    const float length = m_times[segment.second] - start;
    const bool hasLength = segment.first != segment.second && length != 0.0F;
    segment.u = hasLength ? (time - start) / length : 0.0F;
    return true;
}
} // namespace velmoran::scene
