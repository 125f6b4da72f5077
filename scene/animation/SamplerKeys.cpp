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
        m_hasTimes = true;
        m_times = KeyTimes(times->getData());
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
        m_matrices = std::make_unique<MatrixKeys>(m_times, m_values, m_stride, m_steps);
    }
    return *m_matrices;
}

bool SamplerKeys::evaluate(float time, std::size_t& cursor, std::size_t n, float* out) const
{
    KeyTimes::Segment segment{};
    if (!m_times.find(time, cursor, segment) || segment.second >= m_values.size() / m_stride)
    {
        return false;
    }
    const bool holds = segment.first < m_steps.size() && m_steps[segment.first] != 0;
    const float* const b = &m_values[segment.second * m_stride];
    const float* const a = &m_values[segment.first * m_stride];
    const float u = segment.u;
    if (holds || u == 0.0F || u == 1.0F) // exactly that key, whatever the other one is
    {
        std::copy_n(holds || u == 0.0F ? a : b, n, out);
        return true;
    }
    for (std::size_t i = 0; i < n; ++i)
    {
        out[i] = a[i] + u * (b[i] - a[i]);
    }
    return true;
}

bool SamplerKeys::evaluateAfterEnd(float time, std::size_t n, float* out) const
{
    std::size_t cursor = m_times.size();
    KeyTimes::Segment segment{};
    if (m_times.size() == 0 || m_times.find(time, cursor, segment) ||
        m_times.size() > m_values.size() / m_stride)
    {
        return false;
    }
    std::copy_n(&m_values[(m_times.size() - 1) * m_stride], n, out);
    return true;
}
} // namespace velmoran::scene
