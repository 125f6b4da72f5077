// Bounds of meshes and of their primitives.

#include "core/utils/Vector.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/Stream.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <cstddef>

namespace velmoran::scene
{
namespace
{
using Vector3 = core::utils::Vector<float, 3>;

/// The positions of a mesh, three floats each. None when there is no stream or its tuples
/// are of another width.
struct Positions
{
    const float* floats = nullptr;
    std::size_t floatCount = 0;

    std::size_t count() const { return floatCount / 3; }
};

Positions positionsOf(const StreamMapping* mapping)
{
    const StreamPtr stream = mapping != nullptr ? mapping->getStream() : StreamPtr();
    if (!stream || stream->getStride() != 3)
    {
        return Positions();
    }
    return {stream->getData().data(), stream->getData().size()};
}

bool isOrdered(const float* position)
{
    return std::none_of(position, position + 3, [](float value) { return value != value; });
}

Vector3 toVector(const float* position)
{
    return Vector3(position[0], position[1], position[2]);
}

/// The bound that a primitive, perhaps somebody else's, tells.
Vector3 toVector(const std::vector<float>& floats)
{
    return floats.size() < 3 ? Vector3() : toVector(floats.data());
}

Eigen::Vector3f toEigen(const Vector3& vector)
{
    return Eigen::Vector3f(vector[0], vector[1], vector[2]);
}
} // namespace

// Primitives

void MeshPrimitiveBase::calculateMinMax()
{
    const StreamMapping* const mapping = findVerticesMapping(POSITION);
    if (mapping == nullptr)
    {
        m_logger << "[WARN] could not calculate min/max for MeshPrimitive. No Position semantic.";
        return;
    }
    const Positions positions = positionsOf(mapping);
    const std::size_t step = calculateIndexStreamStride();
    Vector3 low = toVector(m_bvMin);
    Vector3 high = toVector(m_bvMax);
    for (std::size_t input = 0; input < m_streamMapping.size(); ++input)
    {
        if (m_streamMapping[input].getSemantic() != VERTEX)
        {
            continue;
        }
        // As everywhere, an input's slot when reading is its place in the list.
        for (std::size_t i = input; i < m_indexStream.size(); i += step)
        {
            const std::size_t tuple = m_indexStream[i];
            if (tuple < positions.count() && isOrdered(positions.floats + 3 * tuple))
            {
                const Vector3 position = toVector(positions.floats + 3 * tuple);
                Vector3::min(low, low, position);
                Vector3::max(high, high, position);
            }
        }
    }
    for (std::size_t i = 0; i < 3; ++i)
    {
        m_bvMin[i] = low[i];
        m_bvMax[i] = high[i];
    }
}

// Meshes

/// What tells the maximum from the minimum.
struct Mesh::Extreme
{
    std::vector<float> (IMeshPrimitive::*ofPrimitive)() const;
    void (*choose)(Vector3&, const Vector3&, const Vector3&);
};

void Mesh::calculateBV()
{
    calculateBVMax();
    calculateBVMin();
    m_bvCenter = m_bvMin + (m_bvMax - m_bvMin) * 0.5F;
    if (!m_primitives.empty())
    {
        m_bvCenter.setZero();
    }
    for (const IMeshPrimitivePtr& primitive : m_primitives)
    {
        m_bvCenter += toEigen(toVector(primitive->getBVCenter()));
    }
    m_hasCurrentBV = true;
}

void Mesh::calculateBVMax()
{
    calculateExtreme({&IMeshPrimitive::getBVMax, Vector3::max}, m_bvMax);
}

void Mesh::calculateBVMin()
{
    calculateExtreme({&IMeshPrimitive::getBVMin, Vector3::min}, m_bvMin);
}

void Mesh::calculateExtreme(const Extreme& extreme, Eigen::Vector3f& result) const
{
    if (!m_primitives.empty())
    {
        Vector3 bound = toVector((m_primitives.front().get()->*extreme.ofPrimitive)());
        for (const IMeshPrimitivePtr& primitive : m_primitives)
        {
            extreme.choose(bound, bound, toVector((primitive.get()->*extreme.ofPrimitive)()));
        }
        result = toEigen(bound);
        return;
    }
    const Positions positions = positionsOf(findStreamMapping(m_vertices, POSITION));
    const std::size_t step =
        std::max<std::size_t>(1, positions.floatCount / static_cast<std::size_t>(m_samplingLimit));
    bool isFirst = true;
    for (std::size_t i = 0; i < positions.count(); i += step)
    {
        if (isOrdered(positions.floats + 3 * i))
        {
            const Vector3 position = toVector(positions.floats + 3 * i);
            Vector3 bound = position;
            extreme.choose(bound, isFirst ? position : toVector(result.data()), position);
            result = toEigen(bound);
            isFirst = false;
        }
    }
}

void Mesh::forgetBV()
{
    m_hasCurrentBV = false;
}

void Mesh::updateBV()
{
    if (m_hasCurrentBV)
    {
        return;
    }
    for (const IMeshPrimitivePtr& primitive : m_primitives)
    {
        const auto base = boost::dynamic_pointer_cast<MeshPrimitiveBase>(primitive);
        if (base)
        {
            base->calculateMinMax();
        }
    }
    calculateBV();
}

Eigen::Vector3f Mesh::getBVCenter()
{
    updateBV();
    return m_bvCenter;
}

Eigen::Vector3f Mesh::getBVMin()
{
    updateBV();
    return m_bvMin;
}

Eigen::Vector3f Mesh::getBVMax()
{
    updateBV();
    return m_bvMax;
}
} // namespace velmoran::scene
