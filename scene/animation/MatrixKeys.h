#pragma once

#include "scene/animation/EvaluatedPose.h"
#include "scene/animation/KeyTimes.h"
#include "scene/animation/PoseLanes.h"

#include <cstddef>
#include <vector>

namespace velmoran::scene
{
/// Keys that are whole matrices, split once and interpolated part by part.
///
/// Threads: evaluating writes nothing but what the caller passes.
class MatrixKeys
{
public:
    /// `values` holds a matrix row by row in the first 16 of every `stride` (16 or more)
    /// floats, for as many keys as it reaches. A key holds until the next one where `steps`
    /// is not 0; keys that it does not reach don't.
    MatrixKeys(const std::vector<float>& values, std::size_t stride, std::vector<char> steps);

    /// Whether no key holds, so that `set` is all it takes.
    bool hasNoSteps() const { return m_asIs.empty(); }

    /// Puts the pose in `segment` into a lane; false when a key has no value. Only where
    /// `hasNoSteps`.
    bool set(PoseLanes& lanes, std::size_t lane, const KeyTimes::Segment& segment) const
    {
        if (segment.second >= m_keys.size())
        {
            return false;
        }
        // Near the end of a segment, its end is taken as it is.
        const bool atEnd = segment.u > SNAP;
        lanes.set(lane, m_keys[atEnd ? segment.second : segment.first], m_keys[segment.second],
                  atEnd ? 0.0F : segment.u);
        return true;
    }

    /// The pose in `segment`; false when a key has no value. It may hold a NaN or an
    /// infinity where the keys do.
    bool evaluate(const KeyTimes::Segment& segment, EvaluatedPose& pose) const;

    void prefetch(const KeyTimes::Segment& segment) const
    {
        __builtin_prefetch(m_keys.data() + segment.first);
        __builtin_prefetch(m_keys.data() + segment.second);
    }

private:
    static constexpr float SNAP = 0.99F;

    std::vector<MatrixKey> m_keys;
    std::vector<char> m_steps;         ///< not 0 for keys that hold; may be shorter
    std::vector<EvaluatedPose> m_asIs; ///< for each key its matrix; empty without steps
};
} // namespace velmoran::scene
