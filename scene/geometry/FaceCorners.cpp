#include "scene/geometry/FaceCorners.h"

#include "scene/geometry/TriangleMeshPrimitive.h"

#include <algorithm>

namespace velmoran::scene
{
FaceCorners::FaceCorners(const TriangleMeshPrimitive& primitive)
    : m_entries(primitive.getIndexStream()),
      m_readWidth(primitive.getStreamMapping().size()),
      m_width(primitive.getIndexStreamStride())
{
    for (std::size_t i = 0; i < m_readWidth; ++i)
    {
        if (primitive.getStreamMapping()[i].getSemantic() == VERTEX)
        {
            m_vertexSlots.push_back(i);
        }
    }
}

std::size_t FaceCorners::triangleCount() const
{
    // The wider steps of reading may leave the index stream before all are read.
    const std::size_t readable = (m_entries.size() + 3 * m_readWidth - 1) / (3 * m_readWidth);
    return std::min(m_entries.size() / m_width / 3, readable);
}

unsigned int FaceCorners::findPosition(std::size_t corner, std::size_t tupleCount) const
{
    unsigned int position = NONE;
    for (const std::size_t slot : m_vertexSlots)
    {
        const unsigned int index = getEntry(corner * m_readWidth, slot);
        position = index < tupleCount ? index : position;
    }
    return position;
}

unsigned int FaceCorners::getRecordPosition(std::size_t corner) const
{
    return getEntry(corner * m_width, firstSlot());
}

unsigned int FaceCorners::getEntry(std::size_t record, std::size_t slot) const
{
    return record < m_entries.size() && slot < m_entries.size() - record ? m_entries[record + slot]
                                                                         : NONE;
}
} // namespace velmoran::scene
