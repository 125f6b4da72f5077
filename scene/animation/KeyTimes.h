#pragma once

#include <cstddef>
#include <vector>

namespace velmoran::scene
{
/// The times of a channel's keys in seconds, and the search for those around a moment.
///
/// Works on any times: unsorted, repeated, NaN. Threads: a search writes nothing but the
/// caller's cursor.
class KeyTimes
{
public:
    /// The keys around a moment.
    struct Segment
    {
        std::size_t first;  ///< the key before `second`; 0 when that is 0
        std::size_t second; ///< the first key that is not earlier than the moment
        float u;            ///< from 0 at `first` to 1; 0 when both times are the same
    };

    KeyTimes() = default;
    explicit KeyTimes(std::vector<float> times);

    std::size_t size() const { return m_times.size(); }

    /// Whether any time is a number.
    bool hasTimes() const { return m_hasTimes; }

    /// Whether all times are the same, bit by bit.
    bool isSameAs(const KeyTimes& other) const;

    /// The same for the same times.
    std::size_t getHash() const { return m_hash; }

    /// Finds the first key whose time is not earlier than `time`; false when there is
    /// none. `cursor` is where this caller's last search ended, 0 at first; any value is
    /// fine. Constant when the moment has hardly moved, else logarithmic.
    bool find(float time, std::size_t& cursor, Segment& segment) const;

    /// The segment that is nothing but the last key; there must be one.
    Segment last() const { return {size() - 1, size() - 1, 0.0F}; }

private:
    bool isFirstReaching(std::size_t index, float time) const;

    std::vector<float> m_times;
    bool m_hasTimes = false;
    std::vector<float> m_reach; ///< the greatest time up to each key: rises, reaches a
                                ///< moment first where m_times does
    std::size_t m_hash = 0;
};
} // namespace velmoran::scene
