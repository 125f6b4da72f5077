#include "scene/geometry/CornerWriter.h"

#include "core/utils/AllOrNothing.h"
#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/StreamCount.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

#include <algorithm>

namespace velmoran::scene
{
namespace
{
/// Makes `values` tuple `index` of a stream that is indexed together with the
/// positions. Tuples that it lacks before that one become zeros.
void putTuple(Stream& stream, std::size_t index, const float* values)
{
    const auto width = static_cast<std::size_t>(stream.getStride());
    std::vector<float>& data = stream.mutableData();
    const std::size_t present = data.size() / width;
    if (present <= index)
    {
        data.resize((index + 1) * width);
        addToCount(stream, index + 1 - present);
    }
    std::copy_n(values, width, data.begin() + static_cast<std::ptrdiff_t>(index * width));
}

bool putIndex(std::vector<unsigned int>& record, int slot, int index)
{
    if (slot < 0 || static_cast<std::size_t>(slot) >= record.size())
    {
        return false;
    }
    record[static_cast<std::size_t>(slot)] = static_cast<unsigned int>(index);
    return true;
}
} // namespace

CornerWriter::CornerWriter(MeshPrimitiveBase& primitive, std::vector<float>& bvMin,
                           std::vector<float>& bvMax)
    : m_primitive(primitive), m_bvMin(bvMin), m_bvMax(bvMax)
{
}

bool CornerWriter::prepareStreams(const std::vector<VertexPtr>& corners, bool shareEqualValues)
{
    for (const bool wantsPosition : {true, false})
    {
        for (const VertexPtr& corner : corners)
        {
            if (!corner ||
                !prepareStreams(*corner, wantsPosition, shareEqualValues, corners.size()))
            {
                return false;
            }
        }
    }
    return true;
}

bool CornerWriter::prepareStreams(const Vertex& corner, bool wantsPosition, bool shareEqualValues,
                                  std::size_t count)
{
    for (unsigned int i = 0; i < corner.getElementCount(); ++i)
    {
        const VertexElementPtr element = corner.getElementAt(i);
        const bool isPosition = element->semantic == POSITION;
        if (isPosition != wantsPosition)
        {
            continue;
        }
        const StreamPtr stream =
            m_primitive.validateStreamStateForVertexElement(element, shareEqualValues);
        if (!stream)
        {
            return false;
        }
        makeRoom(element->semantic, *stream, count);
    }
    return true;
}

/// Lets `stream` have room for `count` more tuples, as `fillRecord` stores them.
void CornerWriter::makeRoom(StreamSemantic semantic, Stream& stream, std::size_t count) const
{
    if (semantic == POSITION ||
        findStreamMapping(m_primitive.getStreamMapping(), semantic) != nullptr)
    {
        stream.makeRoom(count);
        return;
    }
    // Its tuples stand beside the positions: those that it lacks become zeros.
    const StreamPtr positions = m_primitive.getStreamBySemantic(POSITION);
    if (positions && positions->getStride() > 0 && stream.getStride() > 0)
    {
        const std::size_t tuples =
            positions->getData().size() / static_cast<std::size_t>(positions->getStride()) + count;
        const std::size_t floats = tuples * static_cast<std::size_t>(stream.getStride());
        const std::vector<float>& data = stream.getData();
        if (data.capacity() < floats)
        {
            core::utils::makeRoom(stream.mutableData(), floats - data.size());
        }
    }
}

bool CornerWriter::fillRecord(const Vertex& corner, std::vector<unsigned int>& record)
{
    PositionPlace place;
    const VertexElementPtr position = corner.getPosition();
    if (position && !storePosition(*position, record, place))
    {
        return false;
    }
    for (unsigned int i = 0; i < corner.getElementCount(); ++i)
    {
        const VertexElementPtr element = corner.getElementAt(i);
        if (element != position && !storeValue(*element, place, record))
        {
            return false;
        }
    }
    return true;
}

bool CornerWriter::storePosition(const VertexElement& element, std::vector<unsigned int>& record,
                                 PositionPlace& place)
{
    const StreamPtr stream = m_primitive.getStreamBySemantic(POSITION);
    const std::size_t before = stream->getData().size();
    place.index = stream->insertValue(element.size, element.values);
    place.isNew = stream->getData().size() != before;
    const int slot = m_primitive.getStreamMappingOffsetForSemantic(VERTEX);
    if (place.index < 0 || !putIndex(record, slot, place.index))
    {
        return false;
    }
    widenBounds(element);
    return true;
}

bool CornerWriter::storeValue(const VertexElement& element, const PositionPlace& place,
                              std::vector<unsigned int>& record)
{
    const StreamPtr stream = m_primitive.getStreamBySemantic(element.semantic);
    int index = -1;
    if (findStreamMapping(m_primitive.getStreamMapping(), element.semantic) != nullptr)
    {
        index = stream->insertValue(element.size, element.values);
    }
    else if (element.size == stream->getStride() && element.size > 0 && element.values != nullptr)
    {
        if (place.index < 0)
        {
            return true; // no tuple belongs to a corner without position
        }
        // A value that other corners share with their position stays as it is.
        index = place.index;
        if (place.isNew)
        {
            putTuple(*stream, static_cast<std::size_t>(index), element.values);
        }
    }
    const int slot = m_primitive.getStreamMappingOffsetForSemantic(element.semantic);
    return index >= 0 && putIndex(record, slot, index);
}

void CornerWriter::widenBounds(const VertexElement& position)
{
    for (std::size_t i = 0; i < 3 && position.size >= 3; ++i)
    {
        m_bvMin[i] = std::min(m_bvMin[i], position.values[i]);
        m_bvMax[i] = std::max(m_bvMax[i], position.values[i]);
    }
}
} // namespace velmoran::scene
