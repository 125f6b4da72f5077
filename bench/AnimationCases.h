#pragma once

#include "bench/Cases.h"
#include "scene/Forward.h"

#include <Eigen/Geometry>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoran::bench
{
/// Keys of some nodes in flat arrays, split into rotation, translation and scale, which
/// all other forms are made from. All nodes have the same key times.
struct FlatAnimation
{
    std::size_t nodes;
    std::vector<float> times;                  ///< seconds
    std::vector<Eigen::Quaternionf> rotations; ///< those of the first node, then the next
    std::vector<Eigen::Vector3f> translations;
    std::vector<Eigen::Vector3f> scales;
};

/// Keys 30 to a second; from one to the next every node turns, moves and grows a bit.
FlatAnimation makeFlatAnimation(std::int64_t nodes, std::size_t keys);

/// The animation that cases of `nodes` nodes and `keys` keys each use.
const FlatAnimation& animationOf(std::int64_t nodes, std::size_t keys);

/// Ticks of a round, at 60 Hz.
constexpr int TICKS = 64;
constexpr int TICK_MICROSECONDS = 16667;

/// The plain loop: one pass over flat arrays, with a cursor and exact slerp.
class FlatPlayer
{
public:
    explicit FlatPlayer(const FlatAnimation& animation);

    /// Computes all local matrices at `time` (seconds).
    void evaluate(float time);

    const std::vector<Eigen::Matrix4f>& locals() const { return m_locals; }

private:
    const FlatAnimation& m_animation;
    std::size_t m_cursor = 1; ///< the key at or after the time, the same for all nodes
    std::vector<Eigen::Matrix4f> m_locals;
};

/// A playhead that moves as those of the library do, in whole microseconds.
class Playhead
{
public:
    explicit Playhead(const FlatAnimation& animation);

    /// Moves on by one tick; the time in seconds at which to evaluate.
    float advance();

private:
    std::int64_t m_time = 0;
    std::int64_t m_duration;
};
} // namespace velmoran::bench
