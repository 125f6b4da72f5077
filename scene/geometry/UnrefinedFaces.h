#pragma once

#include "scene/Forward.h"
#include "scene/geometry/StreamMapping.h"

#include <cstddef>
#include <limits>
#include <vector>

namespace velmoran::scene
{
class CornerValues;
class MeshPrimitiveBase;

/// A primitive whose faces stay as they are while others of its mesh are refined: its index
/// records follow the positions to their new stream.
///
/// Of what the mesh's vertices list holds, positions alone are kept. The slots of `VERTEX`
///     inputs are their places in the list, as for reading; where inputs share slots, their
///     offsets, and inputs that share such a slot are dropped, because positions and other
///     values part ways. Indices that name no position name none afterwards.
class UnrefinedFaces
{
public:
    explicit UnrefinedFaces(MeshPrimitiveBase& primitive);

    /// Appends to `corners` those of the faces that have a tuple in `positions`.
    void appendCorners(const StreamPtr& positions, CornerValues& corners);

    /// Replaces the index of each corner that was appended, in order, by what `change` makes
    /// of it.
    template <typename Change>
    void changeIndices(Change change)
    {
        for (const std::size_t slot : m_slots)
        {
            for (std::size_t i = slot; i < m_indices.size(); i += m_step)
            {
                m_indices[i] = m_indices[i] == NOWHERE ? NOWHERE : change(m_indices[i]);
            }
        }
    }

    /// Gives inputs and records to the primitive. `vertices` becomes the stream of `VERTEX`.
    void publish(const StreamPtr& vertices);

private:
    /// No stream has such a tuple.
    static constexpr unsigned int NOWHERE = std::numeric_limits<unsigned int>::max();

    void findSlots(bool isShared);

    MeshPrimitiveBase& m_primitive;
    std::vector<StreamMapping> m_inputs;
    std::vector<unsigned int> m_indices;
    std::vector<std::size_t> m_slots; ///< of `VERTEX` inputs, each below m_step and once
    std::size_t m_step;               ///< width of an index record
};
} // namespace velmoran::scene
