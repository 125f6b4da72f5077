#include "scene/animation/Sampler.h"

#include <algorithm>
#include <utility>

namespace velmoran::scene
{
namespace
{
Sampler::Semantic semanticFromName(const std::string& name)
{
    static constexpr std::pair<const char*, Sampler::Semantic> NAMES[] = {
        {"INPUT", Sampler::INPUT},
        {"OUTPUT", Sampler::OUTPUT},
        {"IN_TANGENT", Sampler::IN_TANGENT},
        {"OUT_TANGENT", Sampler::OUT_TANGENT},
        {"INTERPOLATION", Sampler::INTERPOLATION},
    };
    for (const auto& [text, semantic] : NAMES)
    {
        if (name == text)
        {
            return semantic;
        }
    }
    return Sampler::UNKNOWN;
}
} // namespace

Sampler::Sampler(std::string id) : m_id(std::move(id)) {}

Sampler::~Sampler() = default;

const std::string& Sampler::getId() const
{
    return m_id;
}

void Sampler::addInput(const std::string& semanticName, const StreamPtr& stream)
{
    if (stream)
    {
        m_semantics.push_back(semanticFromName(semanticName));
        m_inputs.push_back(stream);
        m_revision.moveOn();
    }
}

const std::vector<Sampler::Semantic>& Sampler::getInputsSemantics() const
{
    return m_semantics;
}

StreamPtr Sampler::getStreamBySemantic(Semantic semantic) const
{
    const auto found = std::find(m_semantics.begin(), m_semantics.end(), semantic);
    if (semantic == UNKNOWN || found == m_semantics.end())
    {
        return StreamPtr();
    }
    return m_inputs[static_cast<std::size_t>(found - m_semantics.begin())];
}

const core::utils::Revision& Sampler::getRevision() const
{
    return m_revision;
}
} // namespace velmoran::scene
