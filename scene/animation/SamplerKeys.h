#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/animation/KeyTimes.h"
#include "scene/animation/MatrixKeys.h"
#include "scene/animation/RevisionStamp.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace velmoran::scene
{
/// The keys of one sampler, copied out of its streams.
///
/// Threads: none of its own; several callers may evaluate at once, each with its cursor.
class VELMORAN_SCENE_EXPORT SamplerKeys
{
public:
    /// `sampler` is not empty.
    explicit SamplerKeys(const SamplerPtr& sampler);

    /// Whether sampler and streams are still as they were copied.
    bool isCurrent() const { return m_stamp.isCurrent(); }

    /// Whether key times ("INPUT" with the one parameter "TIME") and values of at least
    /// `width` floats are there.
    bool isUsable(std::size_t width) const { return m_hasTimes && m_stride >= width; }

    /// The keys read as whole matrices; made at the first call. Needs 16 usable floats.
    const MatrixKeys& asMatrices();

    /// Interpolates the first `n` floats of the values; false when there is no value at
    /// `time`. "Step" segments hold their first key, all others are linear.
    bool evaluate(float time, std::size_t& cursor, std::size_t n, float* out) const;

    /// The first `n` floats of the last key, where `time` is later than all keys; false
    /// where it is not.
    bool evaluateAfterEnd(float time, std::size_t n, float* out) const;

private:
    SamplerPtr m_sampler;
    RevisionStamp m_stamp; ///< of the sampler and its streams
    bool m_hasTimes = false;
    std::size_t m_stride = 0; ///< floats of a value, 0 when there are none
    std::vector<float> m_values;
    std::vector<char> m_steps; ///< for each key with a name, whether it is held
    KeyTimes m_times;
    std::unique_ptr<MatrixKeys> m_matrices;
};
} // namespace velmoran::scene
