#include "scene/geometry/TriangleMeshPrimitive.h"

#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Subdivision.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexNormals.h"

#include <boost/make_shared.hpp>

#include <cstdint>
#include <iostream>

namespace velmoran::scene
{
TriangleMeshPrimitive::TriangleMeshPrimitive(const MeshPtr& mesh,
                                             std::vector<StreamMapping> mapping)
    : TriangleMeshPrimitive(mesh, std::move(mapping), {})
{
}

TriangleMeshPrimitive::TriangleMeshPrimitive(const MeshPtr& mesh,
                                             std::vector<StreamMapping> mapping,
                                             std::vector<unsigned int> indices)
    : MeshPrimitiveBase(mesh, std::move(mapping), std::move(indices))
{
    m_type = TRIANGLES;
}

TriangleMeshPrimitive::~TriangleMeshPrimitive() = default;

unsigned int TriangleMeshPrimitive::getCount() const
{
    const unsigned int stride = calculateIndexStreamStride();
    return stride != 0 ? static_cast<unsigned int>(m_indexStream.size() / stride / 3) : 0;
}

TrianglePtr TriangleMeshPrimitive::getTriangleAt(unsigned int index) const
{
    return readTriangle(index, countElements());
}

IPrimitivePtr TriangleMeshPrimitive::getPrimitiveAt(unsigned int index) const
{
    return getTriangleAt(index);
}

std::vector<IPrimitivePtr> TriangleMeshPrimitive::getPrimitives() const
{
    const unsigned int count = getCount();
    const unsigned int elements = countElements();
    std::vector<IPrimitivePtr> triangles;
    triangles.reserve(count);
    for (unsigned int i = 0; i < count; ++i)
    {
        triangles.push_back(readTriangle(i, elements));
    }
    return triangles;
}

VertexPtr TriangleMeshPrimitive::assembleVertex(std::size_t recordStart) const
{
    return readCorner(recordStart, countElements());
}

/// How many elements an assembled vertex has at most.
unsigned int TriangleMeshPrimitive::countElements() const
{
    std::size_t elements = 0;
    for (const StreamMapping& mapping : m_streamMapping)
    {
        const bool isVertex = mapping.getSemantic() == VERTEX;
        elements += !isVertex ? 1 : m_mesh ? m_mesh->getVertices().size() : 0;
    }
    return static_cast<unsigned int>(elements);
}

VertexPtr TriangleMeshPrimitive::readCorner(std::uint64_t recordStart, unsigned int elements) const
{
    const VertexPtr vertex = boost::make_shared<Vertex>();
    vertex->reserve(elements);
    for (std::size_t i = 0; i < m_streamMapping.size(); ++i)
    {
        if (recordStart >= m_indexStream.size() || i >= m_indexStream.size() - recordStart)
        {
            break;
        }
        const StreamMapping& mapping = m_streamMapping[i];
        const unsigned int index = m_indexStream[static_cast<std::size_t>(recordStart) + i];
        if (mapping.getSemantic() == VERTEX)
        {
            assembleVertexFromVertices(index, vertex);
        }
        else if (mapping.getSemantic() != POSITION)
        {
            addTuple(mapping, index, *vertex);
        }
    }
    return vertex;
}

TrianglePtr TriangleMeshPrimitive::readTriangle(unsigned int index, unsigned int elements) const
{
    const std::uint64_t step = m_streamMapping.size();
    const std::uint64_t start = std::uint64_t(index) * 3 * step;
    if (step == 0 || start >= m_indexStream.size())
    {
        return TrianglePtr();
    }
    return boost::make_shared<Triangle>(readCorner(start, elements),
                                        readCorner(start + step, elements),
                                        readCorner(start + 2 * step, elements));
}

bool TriangleMeshPrimitive::addTriangle(const TrianglePtr& triangle, bool shareEqualValues)
{
    return triangle && appendCorners(triangle->getVertexArray(), shareEqualValues);
}

void TriangleMeshPrimitive::setStreamMapping(std::vector<StreamMapping> mapping)
{
    m_streamMapping = std::move(mapping);
}

std::vector<unsigned int>& TriangleMeshPrimitive::mutableIndexStream()
{
    return m_indexStream;
}

void TriangleMeshPrimitive::recalculateVertexNormals()
{
    if (m_mesh)
    {
        computeVertexNormals(*m_mesh, {this});
    }
}

void TriangleMeshPrimitive::subDivide(const ControllerPtr& controller)
{
    if (m_mesh)
    {
        subDivideTriangles(*m_mesh, {this}, controller);
    }
}

bool TriangleMeshPrimitive::compare(const Eigen::Vector3f& a, const Eigen::Vector3f& b) const
{
    for (const Eigen::Index axis : {0, 1})
    {
        if (!(a[axis] == b[axis]))
        {
            return a[axis] < b[axis];
        }
    }
    return a.z() < b.z();
}

void TriangleMeshPrimitive::print()
{
    std::cout << "Implement me TriangleMeshPrimitive::print()" << std::endl;
}

IMeshPrimitivePtr TriangleMeshPrimitive::clone(const MeshPtr& mesh) const
{
    return boost::make_shared<TriangleMeshPrimitive>(mesh, m_streamMapping, m_indexStream);
}
} // namespace velmoran::scene
