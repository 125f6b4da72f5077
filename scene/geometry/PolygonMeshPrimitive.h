#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/MeshPrimitiveBase.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace velmoran::scene
{
/// A list of faces of any number of corners: index records in a row, and a table that says
/// where those of each face begin.
///
/// Faces come back with what the mesh's vertices list holds, positions above all; the
///     primitive's own inputs are not read. Normals and refinement are not offered, which
///     each such call writes to standard output.
class VELMORAN_SCENE_EXPORT PolygonMeshPrimitive : public MeshPrimitiveBase
{
public:
    /// A face's number of corners, and the entry of the index stream at which its first
    /// record begins.
    using TableEntry = std::pair<unsigned int, unsigned int>;

    /// A primitive without faces.
    PolygonMeshPrimitive(const MeshPtr& mesh, std::vector<StreamMapping> mapping);

    /// Faces by their index records; `polygonCounts` has the number of corners of each, in
    /// order. What begins beyond 32 bits is entered with the largest start there is, and
    /// can't be read.
    PolygonMeshPrimitive(const MeshPtr& mesh, std::vector<StreamMapping> mapping,
                         std::vector<unsigned int> indices,
                         const std::vector<unsigned int>& polygonCounts);

    ~PolygonMeshPrimitive() override;

    /// The number of faces in the table.
    unsigned int getCount() const override;

    /// Face `index`, assembled anew; empty when it is not in the table or its records do not
    /// all lie in the index stream. For every corner and each own input `TEXCOORD1` to
    /// `TEXCOORD7`, `BINORMAL` and `TANGENT` a line on standard output says that it is not
    /// handled.
    PolygonPtr getPolygonAt(unsigned int index) const;

    /// The same as `getPolygonAt`.
    IPrimitivePtr getPrimitiveAt(unsigned int index) const override;
    std::vector<IPrimitivePtr> getPrimitives() const override;

    /// A new vertex from the index record that begins at entry `recordStart`, as for a face.
    /// Inputs whose entry lies behind the index stream are left out.
    VertexPtr assembleVertex(std::size_t recordStart) const;

    /// Appends a face of any number of corners; see `TriangleMeshPrimitive::addTriangle`.
    /// After a failed call no face of the table names the records that stay behind.
    bool addPolygon(const PolygonPtr& polygon, bool shareEqualValues);

    /// The number of corners of all faces.
    virtual unsigned int getTotalVertexCount() const;

    /// The table, face by face.
    virtual const std::vector<TableEntry>& getPolygonStream() const;

    /// Writes "Implement me PolygonMeshPrimitive::print()" to standard output.
    void print() override;

    /// Writes "PolygonMeshPrimitive::recalculateVertexNormals(): Implement me!" to standard
    /// output.
    void recalculateVertexNormals() override;

    /// Writes "PolygonMeshPrimitive::subDivide(): Implement me!" to standard output.
    void subDivide(const ControllerPtr& controller) override;

    /// A copy for `mesh` with the inputs, index records and table; the inputs share the
    /// streams. Material symbol and bounds start anew.
    IMeshPrimitivePtr clone(const MeshPtr& mesh) const override;

private:
    void addFaces(const std::vector<unsigned int>& polygonCounts);

    std::vector<TableEntry> m_polygonStream;
    unsigned int m_totalVertexCount = 0;
};
} // namespace velmoran::scene
