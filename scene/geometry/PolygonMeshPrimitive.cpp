#include "scene/geometry/PolygonMeshPrimitive.h"

#include "core/utils/AllOrNothing.h"
#include "scene/geometry/Polygon.h"
#include "scene/geometry/Vertex.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <limits>

namespace velmoran::scene
{
namespace
{
/// Whether an assembled corner lacks an input of this semantic without saying so.
bool isSkippedSilently(StreamSemantic semantic)
{
    return semantic == COLOR || semantic == TEXCOORD || semantic == NORMAL ||
           semantic == POSITION || semantic == scene::INVALID;
}
} // namespace

PolygonMeshPrimitive::PolygonMeshPrimitive(const MeshPtr& mesh, std::vector<StreamMapping> mapping)
    : PolygonMeshPrimitive(mesh, std::move(mapping), {}, {})
{
}

PolygonMeshPrimitive::PolygonMeshPrimitive(const MeshPtr& mesh, std::vector<StreamMapping> mapping,
                                           std::vector<unsigned int> indices,
                                           const std::vector<unsigned int>& polygonCounts)
    : MeshPrimitiveBase(mesh, std::move(mapping), std::move(indices))
{
    m_type = POLYGONS;
    addFaces(polygonCounts);
}

PolygonMeshPrimitive::~PolygonMeshPrimitive() = default;

void PolygonMeshPrimitive::addFaces(const std::vector<unsigned int>& polygonCounts)
{
    constexpr std::uint64_t LARGEST = std::numeric_limits<unsigned int>::max();
    const std::uint64_t stride = calculateIndexStreamStride();
    std::uint64_t corners = 0;
    m_polygonStream.reserve(polygonCounts.size());
    for (const unsigned int count : polygonCounts)
    {
        m_polygonStream.emplace_back(
            count, static_cast<unsigned int>(std::min(corners * stride, LARGEST)));
        corners += count;
    }
    m_totalVertexCount = static_cast<unsigned int>(std::min(corners, LARGEST));
}

unsigned int PolygonMeshPrimitive::getCount() const
{
    return static_cast<unsigned int>(m_polygonStream.size());
}

PolygonPtr PolygonMeshPrimitive::getPolygonAt(unsigned int index) const
{
    if (index >= m_polygonStream.size())
    {
        return PolygonPtr();
    }
    const auto [corners, start] = m_polygonStream[index];
    const std::uint64_t stride = calculateIndexStreamStride();
    if (stride == 0 || start + corners * stride > m_indexStream.size())
    {
        return PolygonPtr();
    }
    const PolygonPtr polygon = boost::make_shared<Polygon>();
    for (unsigned int i = 0; i < corners; ++i)
    {
        polygon->addVertex(assembleVertex(static_cast<std::size_t>(start + i * stride)));
    }
    return polygon;
}

IPrimitivePtr PolygonMeshPrimitive::getPrimitiveAt(unsigned int index) const
{
    return getPolygonAt(index);
}

std::vector<IPrimitivePtr> PolygonMeshPrimitive::getPrimitives() const
{
    std::vector<IPrimitivePtr> polygons;
    polygons.reserve(m_polygonStream.size());
    for (unsigned int i = 0; i < getCount(); ++i)
    {
        polygons.push_back(getPolygonAt(i));
    }
    return polygons;
}

VertexPtr PolygonMeshPrimitive::assembleVertex(std::size_t recordStart) const
{
    const VertexPtr vertex = boost::make_shared<Vertex>();
    for (std::size_t i = 0; i < m_streamMapping.size(); ++i)
    {
        if (recordStart >= m_indexStream.size() || i >= m_indexStream.size() - recordStart)
        {
            break;
        }
        const StreamSemantic semantic = m_streamMapping[i].getSemantic();
        if (semantic == VERTEX)
        {
            assembleVertexFromVertices(m_indexStream[recordStart + i], vertex);
        }
        else if (!isSkippedSilently(semantic))
        {
            std::cout << streamSemanticToString(semantic) << " not handled" << std::endl;
        }
    }
    return vertex;
}

bool PolygonMeshPrimitive::addPolygon(const PolygonPtr& polygon, bool shareEqualValues)
{
    const std::size_t start = m_indexStream.size();
    core::utils::makeRoom(m_polygonStream);
    if (!polygon || start > std::numeric_limits<unsigned int>::max() ||
        !appendCorners(polygon->getVertices(), shareEqualValues))
    {
        return false;
    }
    m_polygonStream.emplace_back(polygon->getVertexCount(), static_cast<unsigned int>(start));
    m_totalVertexCount += polygon->getVertexCount();
    return true;
}

unsigned int PolygonMeshPrimitive::getTotalVertexCount() const
{
    return m_totalVertexCount;
}

const std::vector<PolygonMeshPrimitive::TableEntry>& PolygonMeshPrimitive::getPolygonStream() const
{
    return m_polygonStream;
}

void PolygonMeshPrimitive::print()
{
    std::cout << "Implement me PolygonMeshPrimitive::print()" << std::endl;
}

void PolygonMeshPrimitive::recalculateVertexNormals()
{
    std::cout << "PolygonMeshPrimitive::recalculateVertexNormals(): Implement me!" << std::endl;
}

void PolygonMeshPrimitive::subDivide(const ControllerPtr& /*controller*/)
{
    std::cout << "PolygonMeshPrimitive::subDivide(): Implement me!" << std::endl;
}

IMeshPrimitivePtr PolygonMeshPrimitive::clone(const MeshPtr& mesh) const
{
    const auto copy = boost::make_shared<PolygonMeshPrimitive>(mesh, m_streamMapping, m_indexStream,
                                                               std::vector<unsigned int>());
    copy->m_polygonStream = m_polygonStream;
    copy->m_totalVertexCount = m_totalVertexCount;
    return copy;
}
} // namespace velmoran::scene
