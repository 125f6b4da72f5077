#include "scene/animation/SamplerKeys.h"

#include "scene/animation/ChannelNames.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"

#include <algorithm>

namespace velmoran::scene
{
namespace
{
bool holdsKeyTimes(const Stream& stream)
{
    return stream.getParamList().size() == 1 && stream.getParamList().front().first == "TIME";
}
} // namespace

SamplerKeys::SamplerKeys(const SamplerPtr& sampler) : m_sampler(sampler)
{
    m_stamp.include(sampler->getRevision());
    const StreamPtr times = sampler->getStreamBySemantic(Sampler::INPUT);
    const StreamPtr values = sampler->getStreamBySemantic(Sampler::OUTPUT);
    const StreamPtr names = sampler->getStreamBySemantic(Sampler::INTERPOLATION);
    for (const StreamPtr& stream : {times, values, names})
    {
        if (stream)
        {
            m_stamp.include(stream->getRevision());
        }
    }
    if (times && holdsKeyTimes(*times))
    {
        m_times = std::make_shared<const KeyTimes>(times->getData());
    }
    if (values)
    {
        m_stride = static_cast<std::size_t>(std::max(values->getStride(), 0));
        m_values = values->getData();
    }
    for (const std::string& name : names ? names->getNameList() : std::vector<std::string>())
    {
        m_steps.push_back(isStep(name) ? 1 : 0);
    }
}

const MatrixKeys& SamplerKeys::asMatrices()
{
    if (!m_matrices)
    {
        m_matrices = std::make_unique<MatrixKeys>(m_values, m_stride, m_steps);
    }
    return *m_matrices;
}

bool SamplerKeys::evaluate(const KeyTimes::Segment& segment, std::size_t n, float* out) const
{
    if (segment.second >= m_values.size() / m_stride)
    {
        return false;
    }
    const float* const a = &m_values[segment.first * m_stride];
    const float* const b = &m_values[segment.second * m_stride];
    const bool holds = segment.first < m_steps.size() && m_steps[segment.first] != 0;
    if (holds || segment.u == 0.0F || segment.u == 1.0F)
    {
        // Exactly that key, whatever the other one is.
        std::copy_n(!holds && segment.u == 1.0F ? b : a, n, out);
        return true;
    }
    for (std::size_t i = 0; i < n; ++i)
    {
        out[i] = a[i] + segment.u * (b[i] - a[i]);
    }
    return true;
}
} // namespace velmoran::scene
