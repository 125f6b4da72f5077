#include "scene/animation/KeyTimes.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <string_view>
#include <utility>

namespace velmoran::scene
{
namespace
{
std::string_view bytesOf(const std::vector<float>& floats)
{
    return {reinterpret_cast<const char*>(floats.data()), floats.size() * sizeof(float)};
}
} // namespace

KeyTimes::KeyTimes(std::vector<float> times)
    : m_times(std::move(times)), m_hash(std::hash<std::string_view>()(bytesOf(m_times)))
{
    m_reach.reserve(m_times.size());
    float greatest = -std::numeric_limits<float>::infinity();
    for (const float time : m_times)
    {
        greatest = time > greatest ? time : greatest; // a NaN reaches nothing
        m_reach.push_back(greatest);
        m_hasTimes = m_hasTimes || time == time;
    }
}

bool KeyTimes::isSameAs(const KeyTimes& other) const
{
    return bytesOf(m_times) == bytesOf(other.m_times);
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
    const bool hasLength = cursor != 0 && length != 0.0F;
    segment.u = hasLength ? (time - start) / length : 0.0F;
    return true;
}

bool KeyTimes::isFirstReaching(std::size_t index, float time) const
{
    return index < m_reach.size() && m_reach[index] >= time &&
           (index == 0 || m_reach[index - 1] < time);
}
} // namespace velmoran::scene
