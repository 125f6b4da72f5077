#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/StreamSemantic.h"

#include <string>
#include <vector>

namespace velmoran::scene
{
/// An input of a primitive or of a mesh's vertices list: what a stream means, and
/// which slot of an index record selects its tuples.
///
/// Ownership: a value; copies share the stream, which may be empty.
class VELMORAN_SCENE_EXPORT StreamMapping
{
public:
    /// Takes the three as they are; `stream` may be empty.
    StreamMapping(StreamSemantic semantic, const StreamPtr& stream, int offset);

    /// The semantic is read from its name; an unknown name gives `INVALID`.
    StreamMapping(const std::string& semantic, const StreamPtr& stream, int offset);

    virtual ~StreamMapping();

    /// Copies share the stream.
    StreamMapping(const StreamMapping& other);
    StreamMapping(StreamMapping&& other) noexcept;
    StreamMapping& operator=(const StreamMapping& other);
    StreamMapping& operator=(StreamMapping&& other) noexcept;

    StreamSemantic getSemantic() const;
    void setSemantic(StreamSemantic semantic);

    const StreamPtr& getStream() const;
    void setStream(const StreamPtr& stream);

    /// Slot of an index record. Inputs that share one read the same tuple index.
    int getOffset() const;
    void setOffset(int offset);

private:
    StreamSemantic m_semantic;
    StreamPtr m_stream;
    int m_offset;
};

/// The first mapping of this semantic; null when there is none. `INVALID` is never
/// found.
VELMORAN_SCENE_EXPORT const StreamMapping*
findStreamMapping(const std::vector<StreamMapping>& mappings, StreamSemantic semantic);
} // namespace velmoran::scene
