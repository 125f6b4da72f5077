#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/IGeometry.h"
#include "scene/geometry/StreamMapping.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// A geometry made of streams and of primitives that index them.
///
/// Vertices list: the inputs that all primitives of the mesh share, at most one for
///     each semantic. They are indexed together, through the `VERTEX` input of a
///     primitive; positions always stand here.
/// Ownership: holds its streams and primitives. A primitive holds its mesh as well,
///     so a mesh with primitives lives until `clearPrimitives` is called; a
///     `GeometryManager` does that for the meshes that only it still holds.
///     Streams may be shared with other meshes and with skins.
/// Threads: not locked. Reading from several threads at once is safe while nobody
///     writes; writers hold the scene lock.
class VELMORAN_SCENE_EXPORT Mesh : public IGeometry
{
public:
    /// An empty mesh of type `MESH`. Its vertices ID is `id` + "_vertices".
    Mesh(std::string id, std::string name);

    ~Mesh() override;

    Mesh(const Mesh&) = delete;
    Mesh& operator=(const Mesh&) = delete;

    std::string getID() const override;

    /// Sets the ID; the vertices ID stays.
    void setID(std::string id) override;

    std::string getName() const override;
    void setName(std::string name) override;
    void setType(Type type) override;
    Type getType() const override;

    /// Prints every primitive in order.
    void print() override;

    /// A new mesh of type `MESH` with the same ID and name, clones of the streams and
    /// clones of the primitives. The inputs in its vertices list and in its
    /// primitives still point at this mesh's streams.
    IGeometryPtr clone() const override;

    /// @name Bounds
    /// Axis-aligned, in the mesh's own space, (0, 0, 0) at the start.
    ///
    /// Computed when they are first asked for, and again after the lists of streams, vertices or
    /// primitives have changed through this mesh: each primitive's `calculateMinMax`, then
    /// `calculateBV`. What is changed in a stream or a primitive itself is seen by an explicit
    /// `calculateMinMax` and `calculateBV`.
    /// @{

    /// The sum of the primitives' centres, not divided by their number; of a mesh without
    /// primitives the middle between minimum and maximum.
    Eigen::Vector3f getBVCenter() override;
    Eigen::Vector3f getBVMin() override;
    Eigen::Vector3f getBVMax() override;

    /// Computes maximum, minimum and centre from the bounds that the primitives have.
    /// A mesh without primitives is sampled: of the positions every step-th one is
    /// read, where step is the number of their floats divided by 100,000, at least 1.
    /// Positions of other than three floats, and none, leave the bounds as they are; a
    /// NaN is skipped.
    void calculateBV();

    /// Lets the bounds be computed again when they are asked for the next time, for whoever
    /// changed positions in place.
    void forgetBV();

    /// The same as `calculateBV` for the maximum alone.
    void calculateBVMax();

    /// The same as `calculateBV` for the minimum alone.
    void calculateBVMin();

    /// @}

    /// @name Refinement
    /// The triangle primitives are treated as one, because they share positions; then primitives of
    /// other kinds, and those that another mesh's positions belong to, do it for themselves, in
    /// order.
    /// @{

    /// Computes the normals of all triangle primitives anew. See
    /// `TriangleMeshPrimitive::recalculateVertexNormals`; normals that are stored with
    /// the vertices are summed over all primitives.
    void recalculateVertexNormals() override;

    /// Refines all triangle primitives once. See `TriangleMeshPrimitive::subDivide`; edges and
    /// new streams are shared by all of them, as far as each had such values. Polygons keep
    /// their faces, and say on standard output that they are not refined. A mesh without
    /// triangle primitives keeps its streams.
    void subDivide(const ControllerPtr& controller) override;

    /// @}

    /// @name Streams
    /// @{

    /// Appends `stream`; an empty handle is ignored.
    void addStream(const StreamPtr& stream);

    /// Takes out the first entry that is this very stream, if there is one.
    void removeStream(const StreamPtr& stream);

    /// The first stream with this ID; empty when there is none.
    StreamPtr getStream(const std::string& id) const;

    const std::vector<StreamPtr>& getStreams() const;

    /// Replaces the list; empty handles are left out.
    void setStreams(const std::vector<StreamPtr>& streams);

    /// Empties the list; vertices list and primitives keep the streams that they use.
    void clearStreams();

    /// Puts `stream` in the place of `current` wherever this mesh holds that: in the list
    /// of streams, in the vertices list and as an input of the primitives. Nothing happens
    /// when either is empty. A stream that is in the list already is not listed twice.
    void replaceStream(const StreamPtr& current, const StreamPtr& stream);

    /// @}

    /// @name Vertices list
    /// @{

    /// Appends `mapping`, unless there is one of its semantic already.
    void addVerticesMapping(const StreamMapping& mapping);

    const std::vector<StreamMapping>& getVertices() const;

    /// Replaces the list; of several mappings of a semantic the first one is kept.
    void setVertices(const std::vector<StreamMapping>& vertices);

    /// Replaces the list of streams and the vertices list, which are as their setters leave
    /// them: without empty handles and repeated semantics. Needs no memory.
    void takeStreams(std::vector<StreamPtr> streams, std::vector<StreamMapping> vertices);

    /// Empties the vertices list; the streams stay in theirs.
    void clearVertices();

    /// The ID of the vertices list as an element of its own.
    const std::string& getVerticesID() const;
    void setVerticesID(const std::string& id);

    /// Removes the streams and vertices mappings behind the first ones. Needs no memory.
    void cutStreamsTo(std::size_t streams, std::size_t vertices);

    /// @}

    /// @name Primitives
    /// @{

    /// Appends `primitive`; an empty handle is ignored.
    void addPrimitive(const IMeshPrimitivePtr& primitive);

    /// Primitive `index`; empty when there is none.
    IMeshPrimitivePtr getPrimitive(unsigned int index) const;
    unsigned int getPrimitiveCount() const;
    const std::vector<IMeshPrimitivePtr>& getMeshPrimitives() const;

    /// Lets go of all primitives. If they alone held this mesh, it is gone afterwards.
    void clearPrimitives();

    /// @}

private:
    struct Extreme;

    void calculateExtreme(const Extreme& extreme, Eigen::Vector3f& result) const;
    void updateBV();

    std::string m_id;
    std::string m_name;
    std::string m_verticesID;
    std::vector<StreamPtr> m_streams; ///< none empty
    std::vector<StreamMapping> m_vertices;
    std::vector<IMeshPrimitivePtr> m_primitives; ///< none empty
    Type m_type;
    Eigen::Vector3f m_bvMin;
    Eigen::Vector3f m_bvMax;
    Eigen::Vector3f m_bvCenter;
    std::int32_t m_samplingLimit = 100000; ///< floats, when there are no primitives
    bool m_hasCurrentBV = false;           ///< for the lists as they are
};
} // namespace velmoran::scene
