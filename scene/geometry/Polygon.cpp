#include "scene/geometry/Polygon.h"

#include <iostream>

namespace velmoran::scene
{
Polygon::Polygon() = default;

Polygon::~Polygon() = default;

Polygon::Polygon(const Polygon& other) = default;

Polygon& Polygon::operator=(const Polygon& other) = default;

void Polygon::addVertex(const VertexPtr& vertex)
{
    m_vertices.push_back(vertex);
}

unsigned int Polygon::getVertexCount() const
{
    return static_cast<unsigned int>(m_vertices.size());
}

VertexPtr Polygon::getVertexAt(unsigned int index) const
{
    return index < m_vertices.size() ? m_vertices[index] : VertexPtr();
}

const std::vector<VertexPtr>& Polygon::getVertices() const
{
    return m_vertices;
}

std::vector<VertexPtr> Polygon::getVertexArray() const
{
    return m_vertices;
}

Eigen::Vector3f Polygon::getFaceNormal() const
{
    std::cout << "Polygon::getFaceNormal() not implemented yet!" << std::endl;
    return Eigen::Vector3f::Zero();
}

void Polygon::applyTransform(const Eigen::Matrix4f& /*matrix*/)
{
    std::cout << "Polygon::applyTransform() not implemented yet!" << std::endl;
}

bool Polygon::intersects(const RayPtr& /*ray*/) const
{
    std::cout << "Polygon::intersects() not implemented yet!" << std::endl;
    return false;
}

bool Polygon::intersects(const Eigen::Vector3f& /*min*/, const Eigen::Vector3f& /*max*/) const
{
    std::cout << "Polygon::intersects() not implemented yet!" << std::endl;
    return false;
}

void Polygon::print() const {}
} // namespace velmoran::scene
