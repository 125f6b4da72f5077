#pragma once

#include "scene/animation/KeyTimes.h"

#include <cstddef>
#include <memory>

namespace velmoran::scene
{
/// Where a moment lies among the keys of a channel.
struct KeyMoment
{
    enum State
    {
        NO_KEYS,
        WITHIN, ///< before or at the last key: the channel has a value
        OVER    ///< behind all keys; the segment is the last key
    };

    State state = NO_KEYS;
    KeyTimes::Segment segment{};
};

/// Follows a moment through key times; channels with the same times share one.
class KeyClock
{
public:
    explicit KeyClock(std::shared_ptr<const KeyTimes> times) : m_times(std::move(times)) {}

    const KeyTimes& getTimes() const { return *m_times; }

    /// Goes to `time` (seconds). Constant when that is near the last one.
    void setTime(float time)
    {
        m_moment.state = m_times->hasTimes() ? KeyMoment::OVER : KeyMoment::NO_KEYS;
        if (m_times->find(time, m_cursor, m_moment.segment))
        {
            m_moment.state = KeyMoment::WITHIN;
        }
        else if (m_moment.state == KeyMoment::OVER)
        {
            m_moment.segment = m_times->last();
        }
    }

    const KeyMoment& getMoment() const { return m_moment; }

private:
    std::shared_ptr<const KeyTimes> m_times;
    std::size_t m_cursor = 0;
    KeyMoment m_moment;
};
} // namespace velmoran::scene
