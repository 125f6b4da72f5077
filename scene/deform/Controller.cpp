#include "scene/deform/Controller.h"

#include "scene/deform/Morph.h"
#include "scene/deform/Skin.h"

#include <utility>

namespace velmoran::scene
{
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
} // namespace velmoran::scene
