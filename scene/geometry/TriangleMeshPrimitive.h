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
    /// A primitive without faces; see `MeshPrimitiveBase`.
    TriangleMeshPrimitive(const MeshPtr& mesh, std::vector<StreamMapping> mapping);

    /// A primitive whose triangles are given by their index records.
    TriangleMeshPrimitive(const MeshPtr& mesh, std::vector<StreamMapping> mapping,
                          std::vector<unsigned int> indices);

    ~TriangleMeshPrimitive() override;

    /// @name Reading and adding
    /// @{

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

    /// @}

    /// @name Rebuilding
    /// @{

    /// Replaces the inputs; the index records stay.
    void setStreamMapping(std::vector<StreamMapping> mapping);

    /// The index records for editing in place. The bounds stay.
    std::vector<unsigned int>& mutableIndexStream();

    /// Computes the normals anew: one for each position, the sum of the face normals of the
    /// triangles at it, brought to length 1. A face normal is as long as the sine of the
    /// angle at the triangle's first corner, whichever corner stands at the position (see
    /// `Triangle::getFaceNormal`). A position without triangle, or whose face normals cancel
    /// out, gets three NaN.
    ///
    /// Stored where the normals are, three floats each:
    /// - If the mesh's vertices list has `NORMAL`, as all data of that stream, in the order
    ///   of the positions. Inputs of this primitive stay as they are.
    /// - Else, if this primitive has an input `NORMAL`, in a new stream with the ID of that
    ///   input's stream, equal normals once. It takes that one's place in the input, not in
    ///   other primitives, and the mesh's list of streams has it at its end instead; the
    ///   old stream stays as it is for whoever else holds it. The input's entries of the
    ///   index records are rewritten. NaN equals nothing: each record of such a position
    ///   gets a tuple of its own.
    /// - Else in a new stream "VM_Calculated_Normals" of the mesh, which the vertices list
    ///   gets as `NORMAL`.
    ///
    /// The count of a stream whose data are replaced stays, that of "VM_Calculated_Normals"
    /// is 0. A `NORMAL` without stream gets a new one, and so does one whose stream the mesh
    /// reads something else out of, which keeps that stream: "VM_Calculated_Normals" in the
    /// vertices list, "NORMAL_stream" as an input. A stream of other than three floats has
    /// three afterwards.
    ///
    /// Positions are the tuples that the first `POSITION` stream of the vertices list holds,
    /// whatever its count says; of wider ones the first three floats count, missing ones are
    /// 0. Nothing happens without such a stream, without a `VERTEX` input and without mesh.
    /// Broken indices: a corner without position counts as the origin in its triangle, as in
    /// `getTriangleAt`, gets no normal, and its entries stay. Inputs that share offsets: the
    /// entries of `VERTEX` and `NORMAL` are taken at their places in the list of inputs, in
    /// steps of `getIndexStreamStride`, so that a place behind the record is one of the next.
    ///
    /// Linear in the index records and positions. Besides the result, works with a normal and
    /// two integers for each position.
    void recalculateVertexNormals() override;

    /// Refines the triangles once: each is split into four at the midpoints of its edges, in
    /// the order (1, m12, m31), (m12, 2, m23), (m31, m23, 3), (m12, m23, m31). This is the
    /// split of Loop (1987) with all vertices left in place.
    ///
    /// Midpoints: a position is a + (b - a) * 0.5, computed once for each edge, in the
    ///     direction in which it is met first. Edges are one if the positions at their ends
    ///     are equal, whatever their indices, so that a closed surface stays closed. (0.0
    ///     equals -0.0; a position with a NaN equals that of its own tuple only.) A normal is
    ///     the sum of the two at the ends of the edge, normalised; zeros stay zeros. A texture
    ///     coordinate is half their sum. Both are those of each triangle: seams stay.
    /// Streams: those of the mesh are replaced, in its list, by "VMR_SUBDIVIDE_POSITION_STREAM"
    ///     (3 floats), "VMR_SUBDIVIDE_NORMAL_STREAM" (3) if the primitive had normals, itself
    ///     or through the vertices list, "VMR_SUBDIVIDE_UV_STREAM" (2) if it had `TEXCOORD`,
    ///     and an empty one of stride 0 named as the vertices ID. They hold each value once,
    ///     in the order of first use. Who holds the old streams keeps them as they were.
    /// Inputs: `VERTEX` at offset 0, then `NORMAL` and `TEXCOORD`, each at the next offset, as
    ///     far as there are any; the vertices list has `POSITION` alone. Other attributes are
    ///     dropped; material symbol and bounds stay.
    /// Sizes: t triangles give 12 t index records; p positions and e edges that differ give
    ///     p + e positions, less what midpoints share with others. Normals and texture
    ///     coordinates are at most 6 t. (A value with a NaN comes anew for each corner.)
    /// Skin: if it is one of this mesh or of none, a position takes the influences of the
    ///     corner that it was, or those of `Skin::calculateNewJointsAndWeights`. Of equal
    ///     positions with other influences, the one written first counts. The counts and
    ///     influences of the skin are replaced, one count for each new position, and
    ///     "VMR_SUBDIVIDE_WEIGHT_STREAM" (1 float, each weight once) takes the place of its
    ///     weights. Vertices that it says nothing of get no influences. The skin of another
    ///     mesh stays as it is.
    /// Other primitives of the mesh keep their faces: their index records follow the positions
    ///     to the new stream, behind the refined ones. They lose what else they had of the
    ///     vertices list, and inputs that share the slot of `VERTEX`. `Mesh::subDivide`
    ///     refines all at once.
    /// Broken input: triangles that can't be read are left out. A corner without position,
    ///     normal or texture coordinate has zeros there; values of another width are cut or
    ///     filled with zeros. Nothing happens without a mesh, nor to more than 178 million
    ///     triangles, whose tuples could not be counted.
    /// Cost: linear in triangles and influences; the memory that is needed beside the result
    ///     is released at the end. Nothing has changed if there is not enough.
    /// Raises no event; see `GeometryManager::subDivideGeometry`.
    void subDivide(const ControllerPtr& controller) override;

    /// @}

    /// @name Other
    /// @{

    /// Whether `a` comes before `b` by x, then y, then z. False where the deciding
    /// coordinates can't be compared.
    bool compare(const Eigen::Vector3f& a, const Eigen::Vector3f& b) const;

    /// Writes "Implement me TriangleMeshPrimitive::print()" to standard output.
    void print() override;

    /// A copy for `mesh` with the inputs and index records; the inputs share the streams.
    /// Material symbol and bounds start anew.
    IMeshPrimitivePtr clone(const MeshPtr& mesh) const override;

    /// @}

private:
    unsigned int countElements() const;
    VertexPtr readCorner(std::uint64_t recordStart, unsigned int elements) const;
    TrianglePtr readTriangle(unsigned int index, unsigned int elements) const;
};
} // namespace velmoran::scene
