#include "scene/deform/Morph.h"

namespace velmoran::scene
{
Morph::Morph(const IGeometryPtr& sourceGeometry) : m_sourceGeometry(sourceGeometry) {}

Morph::~Morph() = default;

IGeometryPtr Morph::getSourceGeometry() const
{
    return m_sourceGeometry;
}

void Morph::setSourceGeometry(const IGeometryPtr& sourceGeometry)
{
    m_sourceGeometry = sourceGeometry;
}

void Morph::setStreams(const std::vector<Stream>&) {}
} // namespace velmoran::scene
