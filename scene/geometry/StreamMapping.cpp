#include "scene/geometry/StreamMapping.h"

#include "scene/geometry/Stream.h"

namespace velmoran::scene
{
StreamMapping::StreamMapping(StreamSemantic semantic, const StreamPtr& stream, int offset)
    : m_semantic(semantic), m_stream(stream), m_offset(offset)
{
}

StreamMapping::StreamMapping(const std::string& semantic, const StreamPtr& stream, int offset)
    : StreamMapping(streamSemanticFromString(semantic), stream, offset)
{
}

StreamMapping::~StreamMapping() = default;

StreamMapping::StreamMapping(const StreamMapping& other) = default;

StreamMapping::StreamMapping(StreamMapping&& other) noexcept = default;

StreamMapping& StreamMapping::operator=(const StreamMapping& other) = default;

StreamMapping& StreamMapping::operator=(StreamMapping&& other) noexcept = default;

StreamSemantic StreamMapping::getSemantic() const
{
    return m_semantic;
}

void StreamMapping::setSemantic(StreamSemantic semantic)
{
    m_semantic = semantic;
}

const StreamPtr& StreamMapping::getStream() const
{
    return m_stream;
}

void StreamMapping::setStream(const StreamPtr& stream)
{
    m_stream = stream;
}

int StreamMapping::getOffset() const
{
    return m_offset;
}

void StreamMapping::setOffset(int offset)
{
    m_offset = offset;
}

const StreamMapping* findStreamMapping(const std::vector<StreamMapping>& mappings,
                                       StreamSemantic semantic)
{
    for (const StreamMapping& mapping : mappings)
    {
        if (mapping.getSemantic() == semantic && semantic != INVALID)
        {
            return &mapping;
        }
    }
    return nullptr;
}
} // namespace velmoran::scene
