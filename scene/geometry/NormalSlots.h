#pragma once

#include "scene/geometry/TriangleMeshPrimitive.h"

#include <cstddef>
#include <vector>

namespace velmoran::scene
{
/// Puts normals into a stream in which equal ones stand once, and their tuple indices into
/// the index records of primitives. Nothing of the primitives changes before `publish`.
class NormalSlots
{
public:
    /// Inserts into `target`, which is new and has stride 3, the normals of the positions that
    /// the records of `primitives` name, in their order. `normals` has three floats for each
    /// position. The primitives have inputs `VERTEX` and `NORMAL`. Linear in the records and
    /// positions.
    NormalSlots(const std::vector<float>& normals,
                const std::vector<TriangleMeshPrimitive*>& primitives, Stream& target);

    /// Rewrites the entries of the normals. Records that name no position, or whose entries do
    /// not all lie in the index stream, stay as they are. Needs no memory.
    void publish();

private:
    void number(const std::vector<float>& normals, Stream& target);
    void writeOneByOne(const std::vector<float>& normals, Stream& target);

    const std::vector<TriangleMeshPrimitive*> m_primitives;

    // Where no place behind a record is one of a later record:
    std::vector<unsigned int> m_tuples;    ///< of each position
    std::vector<unsigned int> m_unordered; ///< of records with a NaN, in their order

    // Else:
    std::vector<std::vector<unsigned int>> m_indices; ///< of each primitive, as they will be
};
} // namespace velmoran::scene
