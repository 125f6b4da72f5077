#include "scene/deform/Controller.h"

#include "scene/deform/Morph.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/IGeometry.h"

#include <utility>

namespace velmoran::scene
{
namespace
{
Eigen::Vector3f boundOf(const SkinPtr& skin, Eigen::Vector3f (IGeometry::*bound)())
{
    const IGeometryPtr geometry = skin ? skin->getSourceGeometry() : IGeometryPtr();
    return geometry ? (geometry.get()->*bound)() : Eigen::Vector3f(Eigen::Vector3f::Zero());
}
} // namespace

Controller::Controller(std::string id, std::string name)
    : m_id(std::move(id)), m_name(std::move(name))
{
}

Controller::~Controller() = default;

const std::string& Controller::getID() const
{
    return m_id;
}

const std::string& Controller::getName() const
{
    return m_name;
}

void Controller::setStreams(const std::vector<Stream>&) {}

void Controller::setSkin(const SkinPtr& skin)
{
    m_skin = skin;
}

SkinPtr Controller::getSkin() const
{
    return m_skin;
}

void Controller::setMorph(const MorphPtr& morph)
{
    m_morph = morph;
}

MorphPtr Controller::getMorph() const
{
    return m_morph;
}

IGeometryPtr Controller::getSourceGeometry() const
{
    if (m_skin)
    {
        return m_skin->getSourceGeometry();
    }
    return m_morph ? m_morph->getSourceGeometry() : IGeometryPtr();
}

Eigen::Vector3f Controller::getBVCenter() const
{
    return boundOf(m_skin, &IGeometry::getBVCenter);
}

Eigen::Vector3f Controller::getBVMin() const
{
    return boundOf(m_skin, &IGeometry::getBVMin);
}

Eigen::Vector3f Controller::getBVMax() const
{
    return boundOf(m_skin, &IGeometry::getBVMax);
}
} // namespace velmoran::scene
