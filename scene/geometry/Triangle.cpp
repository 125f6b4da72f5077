#include "scene/geometry/Triangle.h"

#include "scene/geometry/TriangleBoxTest.h"
#include "scene/geometry/TriangleRayTest.h"
#include "scene/geometry/Vertex.h"
#include "scene/spatial/Ray.h"

#include <Eigen/Geometry>

#include <cmath>
#include <iostream>

namespace velmoran::scene
{
namespace
{
Eigen::Vector3f positionOf(const VertexPtr& vertex)
{
    if (!vertex)
    {
        return Eigen::Vector3f::Zero();
    }
    const core::utils::Vector<float, 3> position = vertex->getPositionVector();
    return {position[0], position[1], position[2]};
}

Eigen::Vector3f makeEdge(const Eigen::Vector3f& from, const Eigen::Vector3f& to)
{
    Eigen::Vector3f edge = to - from;
    if (edge.norm() == 0.0f)
    {
        edge.x() += 0.001f;
    }
    return edge;
}
} // namespace

Triangle::Triangle(const VertexPtr& vertex1, const VertexPtr& vertex2, const VertexPtr& vertex3)
    : m_vertices{vertex1, vertex2, vertex3}
{
    updateCache();
}

Triangle::~Triangle() = default;

Triangle::Triangle(const Triangle& other) = default;

Triangle& Triangle::operator=(const Triangle& other) = default;

Eigen::Vector3f Triangle::getFaceNormal() const
{
    return m_edge1.normalized().cross(m_edge2.normalized());
}

void Triangle::applyTransform(const Eigen::Matrix4f& matrix)
{
    std::array<Eigen::Vector3f, 3> moved;
    for (std::size_t i = 0; i < 3; ++i)
    {
        moved[i] = (matrix * positionOf(m_vertices[i]).homogeneous()).head<3>();
    }
    for (std::size_t i = 0; i < 3; ++i)
    {
        if (m_vertices[i])
        {
            m_vertices[i]->setPosition(moved[i].x(), moved[i].y(), moved[i].z());
        }
    }
    updateCache();
}

std::vector<VertexPtr> Triangle::getVertexArray() const
{
    return {m_vertices.begin(), m_vertices.end()};
}

bool Triangle::intersects(const RayPtr& ray) const
{
    if (!ray || !hasArea(m_positions))
    {
        return false;
    }
    const TriangleRayTest test(ray->getOrigin(), ray->getDirection());
    return test.isUsable() && std::isfinite(test.meets(m_positions));
}

bool Triangle::intersects(const Eigen::Vector3f& min, const Eigen::Vector3f& max) const
{
    return hasArea(m_positions) && meetsBox(m_positions, min, max);
}

const std::array<Eigen::Vector3f, 3>& Triangle::getPositions() const
{
    return m_positions;
}

VertexPtr Triangle::getVertexAt(unsigned int index) const
{
    return index < m_vertices.size() ? m_vertices[index] : VertexPtr();
}

void Triangle::updateCache()
{
    for (std::size_t i = 0; i < 3; ++i)
    {
        m_positions[i] = positionOf(m_vertices[i]);
    }
    m_edge1 = makeEdge(m_positions[0], m_positions[1]);
    m_edge2 = makeEdge(m_positions[0], m_positions[2]);
    m_edge3 = makeEdge(m_positions[2], m_positions[1]);
}

void Triangle::print() const
{
    static constexpr const char* headings[] = {" Vertex 1: ", " Vertex 2: ", " Vertex 3: "};
    std::cout << "Triangle:" << std::endl;
    for (std::size_t i = 0; i < 3; ++i)
    {
        std::cout << headings[i];
        if (m_vertices[i])
        {
            m_vertices[i]->print();
        }
    }
}
} // namespace velmoran::scene
