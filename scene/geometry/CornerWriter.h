#pragma once

#include "scene/Forward.h"
#include "scene/geometry/StreamSemantic.h"

#include <vector>

namespace velmoran::scene
{
class MeshPrimitiveBase;

/// Stores the corners of new faces in the streams of a primitive.
///
/// Takes the bounds of the primitive along: a position that was stored widens them.
class CornerWriter
{
public:
    /// The primitive and its bounds, three floats each, must outlive the writer.
    CornerWriter(MeshPrimitiveBase& primitive, std::vector<float>& bvMin,
                 std::vector<float>& bvMax);

    /// Asks for every stream that the corners need, those of the positions first, so
    /// that a new `VERTEX` input has the first slot, and lets each have room for the
    /// corners: filling records needs no memory. False when a stream or a corner is
    /// missing.
    bool prepareStreams(const std::vector<VertexPtr>& corners, bool shareEqualValues);

    /// Stores the values of `corner`, whose streams are prepared, and writes their tuple
    /// indices to `record`. False when a value does not fit its stream or an index has
    /// no slot in the record; what was stored until then stays.
    bool fillRecord(const Vertex& corner, std::vector<unsigned int>& record);

private:
    /// Where the position of a corner was stored.
    struct PositionPlace
    {
        int index = -1;     ///< tuple; -1 while the corner has no position
        bool isNew = false; ///< whether the tuple was not there before
    };

    bool prepareStreams(const Vertex& corner, bool wantsPosition, bool shareEqualValues,
                        std::size_t count);
    void makeRoom(StreamSemantic semantic, Stream& stream, std::size_t count) const;
    bool storePosition(const VertexElement& element, std::vector<unsigned int>& record,
                       PositionPlace& place);
    bool storeValue(const VertexElement& element, const PositionPlace& place,
                    std::vector<unsigned int>& record);
    void widenBounds(const VertexElement& position);

    MeshPrimitiveBase& m_primitive;
    std::vector<float>& m_bvMin;
    std::vector<float>& m_bvMax;
};
} // namespace velmoran::scene
