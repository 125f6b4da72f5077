#pragma once

#include "scene/geometry/TriangleMeshPrimitive.h"

#include <cstddef>
#include <vector>

namespace velmoran::scene
{
/// Writes normals to streams in which equal ones stand once, and their tuple indices to the
/// index records of primitives.
class NormalSlots
{
public:
    /// `normals` has three floats for each position, must outlive this and stay as it is.
    explicit NormalSlots(const std::vector<float>& normals);

    /// Inserts into `target`, which is new and has stride 3, the normals of the positions that
    /// the records of `primitives` name, in their order, and rewrites the entries of the
    /// normals. The primitives have inputs `VERTEX` and `NORMAL`. Records that name no
    /// position, or whose entries do not all lie in the index stream, stay as they are.
    /// Linear in the records and positions.
    void write(const std::vector<TriangleMeshPrimitive*>& primitives, Stream& target) const;

private:
    class Numbers;

    void writeTogether(const std::vector<TriangleMeshPrimitive*>& primitives, Stream& target) const;
    void writeOneByOne(const std::vector<TriangleMeshPrimitive*>& primitives, Stream& target) const;

    const std::vector<float>& m_normals;
};
} // namespace velmoran::scene
