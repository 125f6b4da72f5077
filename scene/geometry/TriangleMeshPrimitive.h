#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/MeshPrimitiveBase.h"

#include <Eigen/Core>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoran::scene
{
/// A list of triangles: three index records in a row for each.
///
/// Two record widths: triangles are read in steps of the number of inputs, and an input
///     is read at its place in the list; they are counted and added in steps of the
///     number of distinct offsets, and an input is written at its offset. Both agree
///     where every input has an offset of its own and these are 0, 1, 2 ... in list
///     order. A primitive whose inputs share offsets is counted correctly but read with
///     the wider record.
/// Broken indices: an attribute whose entry lies behind the index stream, or whose tuple
///     lies behind its stream's data, is left out of the assembled vertex.
class VELMORAN_SCENE_EXPORT TriangleMeshPrimitive : public MeshPrimitiveBase
{
public:
    TriangleMeshPrimitive(const MeshPtr& mesh, std::vector<StreamMapping> mapping);
    TriangleMeshPrimitive(const MeshPtr& mesh, std::vector<StreamMapping> mapping,
                          std::vector<unsigned int> indices);

    ~TriangleMeshPrimitive() override;

    // Reading

    /// The number of whole triangles in the index stream.
    unsigned int getCount() const override;

    /// Triangle `index`, assembled anew; empty when its first record begins behind the
    /// index stream, or the primitive has no inputs.
    TrianglePtr getTriangleAt(unsigned int index) const;

    /// The same as `getTriangleAt`.
    IPrimitivePtr getPrimitiveAt(unsigned int index) const override;

    /// `getCount` triangles in order. Allocates nothing but what it hands out.
    std::vector<IPrimitivePtr> getPrimitives() const override;

    /// A new vertex from the index record that begins at entry `recordStart`. Positions
    /// are read through the `VERTEX` input only.
    VertexPtr assembleVertex(std::size_t recordStart) const;

    /// Appends a triangle: stores the values of its corners in the streams, and makes
    /// streams and inputs for attributes that the primitive lacks (see
    /// `validateStreamStateForVertexElement`). Widens the bounds by the positions, if
    /// they have three floats or more. An attribute that a corner lacks points at
    /// tuple 0.
    ///
    /// A value whose stream stands in the mesh's vertices list belongs to the position:
    /// it is stored with a new position, and ignored when the position was there before
    /// or the corner has none.
    ///
    /// Answers false, before any value is stored, when the triangle or a corner is empty
    /// or a stream can't be had; later, and after logging an error, when a value's size
    /// is not its stream's stride or no slot of the record takes its index. What was
    /// stored until then stays, corners before that one included.
    bool addTriangle(const TrianglePtr& triangle, bool shareEqualValues);

    // Other

    /// Whether `a` comes before `b` by x, then y, then z. False where the deciding
    /// coordinates can't be compared.
    bool compare(const Eigen::Vector3f& a, const Eigen::Vector3f& b) const;

    /// Writes "Implement me TriangleMeshPrimitive::print()" to standard output.
    void print() override;

    /// A copy for `mesh` with the inputs and index records; the inputs share the streams.
    /// Material symbol and bounds start anew.
    IMeshPrimitivePtr clone(const MeshPtr& mesh) const override;

private:
    unsigned int countElements() const;
    VertexPtr readCorner(std::uint64_t recordStart, unsigned int elements) const;
    TrianglePtr readTriangle(unsigned int index, unsigned int elements) const;
};
} // namespace velmoran::scene
