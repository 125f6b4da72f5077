#include "scene/graph/ITransformation.h"

#include <utility>

namespace velmoran::scene
{
ITransformation::ITransformation() = default;

ITransformation::ITransformation(const ITransformation& other) : m_sid(other.m_sid) {}

ITransformation& ITransformation::operator=(const ITransformation& other)
{
    ITransformation::setSid(other.m_sid);
    return *this;
}

ITransformation::~ITransformation() = default;

bool ITransformation::updated()
{
    return std::exchange(m_updated, false);
}

void ITransformation::setSid(std::string sid)
{
    m_sid = std::move(sid);
    m_sidRevision.moveOn();
    markUpdated();
}

std::string ITransformation::getSid() const
{
    return m_sid;
}

const core::utils::Revision& ITransformation::getSidRevision() const
{
    return m_sidRevision;
}

void ITransformation::markUpdated()
{
    m_updated = true;
}
} // namespace velmoran::scene
