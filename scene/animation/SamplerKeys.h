#pragma once

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
class SamplerKeys
{
public:
    /// `sampler` is not empty.
    explicit SamplerKeys(const SamplerPtr& sampler);

    /// Whether sampler and streams are still as they were copied.
    bool isCurrent() const { return m_stamp.isCurrent(); }

    /// Whether key times ("INPUT" with the one parameter "TIME") and values of at least
    /// `width` (1 or more) floats are there.
    bool isUsable(std::size_t width) const { return m_times && m_stride >= width; }

    /// The key times; empty unless usable.
    const std::shared_ptr<const KeyTimes>& getTimes() const { return m_times; }

    /// The keys read as whole matrices; made at the first call. 16 floats must be usable.
    const MatrixKeys& asMatrices();

    /// Interpolates the first `n` floats of the values in `segment`; false when a key has
    /// no value. "Step" segments hold their first key, all others are linear. `n` floats
    /// must be usable.
    bool evaluate(const KeyTimes::Segment& segment, std::size_t n, float* out) const;

private:
    SamplerPtr m_sampler;
    RevisionStamp m_stamp; ///< of the sampler and its streams
    std::shared_ptr<const KeyTimes> m_times;
    std::size_t m_stride = 0; ///< floats of a value, 0 when there are none
    std::vector<float> m_values;
    std::vector<char> m_steps; ///< for each key with a name, whether it is held
    std::unique_ptr<MatrixKeys> m_matrices;
};
} // namespace velmoran::scene
