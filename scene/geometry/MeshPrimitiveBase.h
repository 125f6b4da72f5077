#pragma once

#include "core/logger/Logger.h"
#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/IMeshPrimitive.h"

#include <cstddef>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// What all primitives share: inputs, index records, bounds and material symbol.
///
/// Index records: every corner of every face takes `getIndexStreamStride` entries of
///     the index stream. The entry at an input's offset is the tuple index in that
///     input's stream; that of the `VERTEX` input counts in every stream of the
///     mesh's vertices list.
/// Ownership: holds its mesh, which holds it in turn (see `Mesh`), and shares the
///     streams of its inputs.
/// Logging: errors go to "SceneManager.log" and to standard output.
class VELMORAN_SCENE_EXPORT MeshPrimitiveBase : public IMeshPrimitive
{
public:
    /// A primitive without faces. `mesh` may be empty: nothing is reached through it
    /// then and no stream can be added. The mesh does not hold the primitive yet.
    MeshPrimitiveBase(const MeshPtr& mesh, std::vector<StreamMapping> mapping);

    /// A primitive whose faces are given by their index records.
    MeshPrimitiveBase(const MeshPtr& mesh, std::vector<StreamMapping> mapping,
                      std::vector<unsigned int> indices);

    ~MeshPrimitiveBase() override;

    MeshPrimitiveBase(const MeshPrimitiveBase&) = delete;
    MeshPrimitiveBase& operator=(const MeshPrimitiveBase&) = delete;

    const MeshPtr& getMesh() const;

    const std::vector<unsigned int>& getIndexStream() const override;
    unsigned int getIndexStreamStride() const override;
    const std::vector<StreamMapping>& getStreamMapping() const override;
    Type getType() const override;

    /// The bounds of the positions that were added or that `calculateMinMax` has met,
    /// together with the origin.
    std::vector<float> getBVMin() const override;
    std::vector<float> getBVMax() const override;
    std::vector<float> getBVCenter() const override;

    /// Widens the bounds by the positions that the index records name. Indices that name
    /// none, positions with a NaN and streams of other than three floats are skipped;
    /// a mesh without positions is told with a warning. Linear in the index records.
    void calculateMinMax();

    void setMaterialSymbol(std::string symbol) override;

    /// "velmoran_material" at the start.
    std::string getMaterialSymbol() const override;

    /// @name Locating inputs
    /// `INVALID` is never found.
    /// @{

    /// The number of distinct offsets of the inputs.
    unsigned int calculateIndexStreamStride() const;

    /// The stream of the first input of this semantic, else that of the mesh's vertices
    /// list; empty when there is neither, or when that input has no stream.
    StreamPtr getStreamBySemantic(StreamSemantic semantic) const;

    /// The place in the list of inputs through which `semantic` is reached: that of the
    /// first input of this semantic, else of the last `VERTEX` input if the mesh's
    /// vertices list has the semantic. -1 when there is none; logs an error when a
    /// `VERTEX` input was needed but is missing, or the list of inputs is empty.
    int getStreamMappingIndexForSemantic(StreamSemantic semantic) const;

    /// The same as `getStreamMappingIndexForSemantic`, but answers the input's offset.
    int getStreamMappingOffsetForSemantic(StreamSemantic semantic) const;

    /// Puts `stream` in the place of `current` in the inputs that read it. An empty
    /// `current` is not looked for.
    void replaceStream(const StreamPtr& current, const StreamPtr& stream);

    /// Replaces the inputs and the index records, for whoever has rebuilt the streams. The
    /// bounds stay, and so does what a primitive knows of its faces beside their records.
    void setFaces(std::vector<StreamMapping> mapping, std::vector<unsigned int> indices);

    /// @}

    /// @name Reading and adding values
    /// @{

    /// The stream that takes values of `element`: the one that is there, else a new one
    /// of the element's size, which is added to the mesh and to the inputs. It stores
    /// equal values once if `shareEqualValues` is set. A position goes to the mesh's
    /// vertices list, and gives the primitive a `VERTEX` input at offset 0 if it has
    /// none; any other semantic takes a new slot at the end of the index records, which
    /// does not widen the records that are there: add faces afterwards.
    ///
    /// Empty when `element` is empty or means `INVALID`, when there is no mesh to add
    /// to, or when the semantic's input is there but has no stream.
    StreamPtr validateStreamStateForVertexElement(const VertexElementPtr& element,
                                                  bool shareEqualValues);

    /// Adds to `into` tuple `vertexIndex` of each stream of the mesh's vertices list and
    /// returns `into`. Leaves out what has no such tuple; replaces what is there.
    VertexPtr assembleVertexFromVertices(unsigned int vertexIndex, const VertexPtr& into) const;

    /// @}

protected:
    /// Adds to `into` a copy of tuple `index` of the mapping's stream; nothing if there is
    /// no such tuple, or the mapping means `VERTEX` or `INVALID`.
    static void addTuple(const StreamMapping& mapping, std::size_t index, Vertex& into);

    /// Appends the index records of a face; false when a corner or a value could not
    /// be stored. See `TriangleMeshPrimitive::addTriangle`.
    bool appendCorners(const std::vector<VertexPtr>& corners, bool shareEqualValues);

    mutable core::logger::Logger m_logger; ///< to "SceneManager.log" and standard output
    MeshPtr m_mesh;                        ///< strong; `Mesh::clearPrimitives` breaks the circle
    std::vector<StreamMapping> m_streamMapping; ///< the inputs
    std::vector<unsigned int> m_indexStream;    ///< the index records in a row
    Type m_type;                                ///< the kind of faces
    std::string m_materialSymbol;               ///< what instances bind a material to
    std::vector<float> m_bvMin;                 ///< 3 floats
    std::vector<float> m_bvMax;                 ///< 3 floats

private:
    void initLogger();
    const StreamMapping* findVerticesMapping(StreamSemantic semantic) const;
    int locate(StreamSemantic semantic, bool wantsOffset) const;
    class NewStreams;

    StreamPtr createStream(const std::string& id, int stride, bool shareEqualValues);
    StreamPtr createPositionStream(int stride, bool shareEqualValues);
};
} // namespace velmoran::scene
