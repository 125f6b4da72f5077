#include "scene/graph/ITransformation.h"

#include <utility>

namespace velmoran::scene
{
ITransformation::ITransformation() = default;

ITransformation::ITransformation(const ITransformation& other) : m_sid(other.m_sid) {}

ITransformation& ITransformation::operator=(const ITransformation& other)
{
    m_sid = other.m_sid;
    markUpdated();
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
    markUpdated();
}

std::string ITransformation::getSid() const
{
    return m_sid;
}

void ITransformation::markUpdated()
{
    m_updated = true;
}
} // namespace velmoran::scene
