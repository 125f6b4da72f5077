#pragma once

#include "scene/Forward.h"

#include <cstddef>
#include <limits>
#include <vector>

namespace velmoran::scene
{
/// Where the corners of a triangle primitive stand in its index stream, as its triangles
/// are read and counted (see `TriangleMeshPrimitive`), for work on flat arrays.
///
/// Corners are numbered through: those of triangle t are 3 t to 3 t + 2. Must not outlive
/// the primitive nor see its inputs or index stream change.
class FaceCorners
{
public:
    /// Stands for an index that is not there; no stream has that many tuples.
    static constexpr unsigned int NONE = std::numeric_limits<unsigned int>::max();

    explicit FaceCorners(const TriangleMeshPrimitive& primitive);

    /// Whether there is a `VERTEX` input. Without, nothing else may be asked.
    bool hasPositions() const { return !m_vertexSlots.empty(); }

    /// Number of triangles that can be read.
    std::size_t triangleCount() const;

    /// Whether both widths agree and there is one `VERTEX` input: the position of corner c
    /// is then entry `firstSlot() + c * width()`, both in the assembled triangle and in its
    /// record.
    bool isPlain() const { return m_width == m_readWidth && m_vertexSlots.size() == 1; }

    /// The first `VERTEX` input's place in the list of inputs.
    std::size_t firstSlot() const { return m_vertexSlots.front(); }

    /// Entries of a record.
    std::size_t width() const { return m_width; }

    /// The position that the assembled triangle has at `corner`: that of the last `VERTEX`
    /// input whose index is below `tupleCount`. NONE when there is none.
    unsigned int findPosition(std::size_t corner, std::size_t tupleCount) const;

    /// The position that the record of `corner` names through the first `VERTEX` input; NONE
    /// when its entry lies behind the index stream.
    unsigned int getRecordPosition(std::size_t corner) const;

private:
    unsigned int getEntry(std::size_t record, std::size_t slot) const;

    const std::vector<unsigned int>& m_entries;
    std::size_t m_readWidth; ///< the number of inputs
    std::size_t m_width;     ///< the number of distinct offsets, not more
    std::vector<std::size_t> m_vertexSlots;
};
} // namespace velmoran::scene
