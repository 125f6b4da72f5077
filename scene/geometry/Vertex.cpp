#include "scene/geometry/Vertex.h"

#include "scene/geometry/VertexElement.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <initializer_list>
#include <iostream>

namespace velmoran::scene
{
namespace
{
VertexElementPtr makeElement(StreamSemantic semantic, std::initializer_list<float> values)
{
    return VertexElement::copyOf(semantic, static_cast<int>(values.size()), values.begin());
}

VertexElementPtr makeElement(StreamSemantic semantic, const std::vector<float>& values)
{
    return VertexElement::copyOf(semantic, static_cast<int>(values.size()), values.data());
}

StreamSemantic textCoordSemantic(int set)
{
    return set >= 0 && set <= 7 ? static_cast<StreamSemantic>(TEXCOORD + set) : INVALID;
}
} // namespace

Vertex::Vertex() = default;

Vertex::~Vertex() = default;

Vertex::Vertex(const Vertex& other) = default;

Vertex& Vertex::operator=(const Vertex& other) = default;

void Vertex::setPosition(float x, float y)
{
    addElement(makeElement(POSITION, {x, y}), true);
}

void Vertex::setPosition(float x, float y, float z)
{
    addElement(makeElement(POSITION, {x, y, z}), true);
}

void Vertex::setPosition(float x, float y, float z, float w)
{
    addElement(makeElement(POSITION, {x, y, z, w}), true);
}

void Vertex::setPosition(const std::vector<float>& values)
{
    addElement(makeElement(POSITION, values), true);
}

void Vertex::setPosition(int n, float* values)
{
    addElement(boost::make_shared<VertexElement>(POSITION, n, values), true);
}

void Vertex::setColor(float r, float g, float b, float a)
{
    addElement(makeElement(COLOR, {r, g, b, a}), true);
}

void Vertex::setColor(const std::vector<float>& values)
{
    addElement(makeElement(COLOR, values), true);
}

void Vertex::setNormal(float x, float y, float z)
{
    addElement(makeElement(NORMAL, {x, y, z}), true);
}

void Vertex::setNormal(const std::vector<float>& values)
{
    addElement(makeElement(NORMAL, values), true);
}

void Vertex::setBinormal(float x, float y, float z)
{
    addElement(makeElement(BINORMAL, {x, y, z}), true);
}

void Vertex::setBinormal(const std::vector<float>& values)
{
    addElement(makeElement(BINORMAL, values), true);
}

void Vertex::setTangent(float x, float y, float z)
{
    addElement(makeElement(TANGENT, {x, y, z}), true);
}

void Vertex::setTangent(const std::vector<float>& values)
{
    addElement(makeElement(TANGENT, values), true);
}

void Vertex::setTextCoord(int set, float s)
{
    addElement(makeElement(textCoordSemantic(set), {s}), true);
}

void Vertex::setTextCoord(int set, float s, float t)
{
    addElement(makeElement(textCoordSemantic(set), {s, t}), true);
}

void Vertex::setTextCoord(int set, float s, float t, float p)
{
    addElement(makeElement(textCoordSemantic(set), {s, t, p}), true);
}

void Vertex::setTextCoord(int set, float s, float t, float p, float q)
{
    addElement(makeElement(textCoordSemantic(set), {s, t, p, q}), true);
}

void Vertex::setTextCoord(int set, const std::vector<float>& values)
{
    addElement(makeElement(textCoordSemantic(set), values), true);
}

void Vertex::setTextCoord(int set, int n, float* values)
{
    addElement(boost::make_shared<VertexElement>(textCoordSemantic(set), n, values), true);
}

VertexElementPtr Vertex::getPosition() const
{
    return getElementBySemantic(POSITION);
}

VertexElementPtr Vertex::getColor() const
{
    return getElementBySemantic(COLOR);
}

VertexElementPtr Vertex::getNormal() const
{
    return getElementBySemantic(NORMAL);
}

VertexElementPtr Vertex::getBinormal() const
{
    return getElementBySemantic(BINORMAL);
}

VertexElementPtr Vertex::getTangent() const
{
    return getElementBySemantic(TANGENT);
}

VertexElementPtr Vertex::getTexCoord(int set) const
{
    return getElementBySemantic(textCoordSemantic(set));
}

VertexElementPtr Vertex::getTexCoord(StreamSemantic semantic) const
{
    return getElementBySemantic(semantic);
}

VertexElementPtr Vertex::getElementBySemantic(StreamSemantic semantic) const
{
    const VertexElementPtr* element = find(semantic);
    return element != nullptr ? *element : VertexElementPtr();
}

VertexElementPtr Vertex::getElementAt(unsigned int index) const
{
    return index < m_elements.size() ? m_elements[index] : VertexElementPtr();
}

unsigned int Vertex::getElementCount() const
{
    return static_cast<unsigned int>(m_elements.size());
}

core::utils::Vector<float, 3> Vertex::getPositionVector() const
{
    core::utils::Vector<float, 3> position;
    const VertexElementPtr* element = find(POSITION);
    if (element == nullptr || (*element)->values == nullptr)
    {
        return position;
    }
    const int size = std::min((*element)->size, 3);
    for (int i = 0; i < size; ++i)
    {
        position[static_cast<std::size_t>(i)] = (*element)->values[i];
    }
    return position;
}

void Vertex::addElement(const VertexElementPtr& element, bool replace)
{
    if (!element)
    {
        return;
    }
    for (VertexElementPtr& present : m_elements)
    {
        if (present->semantic == element->semantic)
        {
            if (replace)
            {
                present = element;
            }
            return;
        }
    }
    m_elements.push_back(element);
}

void Vertex::reserve(unsigned int count)
{
    m_elements.reserve(count);
}

void Vertex::print() const
{
    const core::utils::Vector<float, 3> position = getPositionVector();
    std::cout << position[0] << ", " << position[1] << ", " << position[2];
}

const VertexElementPtr* Vertex::find(StreamSemantic semantic) const
{
    for (const VertexElementPtr& element : m_elements)
    {
        if (element->semantic == semantic)
        {
            return &element;
        }
    }
    return nullptr;
}
} // namespace velmoran::scene
