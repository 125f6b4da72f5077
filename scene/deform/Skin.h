#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#include <array>
#include <string>
#include <vector>

namespace velmoran::scene
{
struct Influence;

/// How the joints of a skeleton move the vertices of a mesh.
///
/// Data: the joints inputs name the joints and give each its inverse bind matrix; the
///     vertex-weights inputs name the joints that influences count in and hold the
///     weights. Influences stand in two lists: `vcount` has their number for each
///     vertex of the source geometry, `v` two integers for each influence, vertex
///     after vertex: index of the joint, index of the weight. The lists are kept as
///     they are given; whoever reads them checks the indices.
/// Ownership: shares its geometry and streams. An input always is one of the skin's
///     streams, or empty.
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT Skin
{
public:
    /// A skin of `sourceGeometry` without streams and with the identity as bind shape
    /// matrix.
    explicit Skin(const IGeometryPtr& sourceGeometry);

    virtual ~Skin();

    /// The skinned mesh; empty when none was given.
    IGeometryPtr getSourceGeometry() const;

    /// Makes the skin deform another mesh, to whose vertices the influences then belong.
    void setSourceGeometry(const IGeometryPtr& sourceGeometry);

    /// The matrix that takes the mesh to where it was bound to the skeleton.
    const Eigen::Matrix4f& getBindShapeMatrix() const;
    void setBindShapeMatrix(const Eigen::Matrix4f& matrix);

    /// @name Streams and inputs
    /// @{

    /// Replaces all streams; empty handles are left out. An input whose stream is not
    /// among them goes to the first stream of the same ID, and is empty when there is
    /// none.
    void setStreams(const std::vector<StreamPtr>& streams);
    const std::vector<StreamPtr>& getStreams() const;

    /// The first stream with this ID; empty when there is none. Linear.
    StreamPtr getStreamById(const std::string& id) const;

    /// Makes the stream `streamId` the joints input "JOINT" or "INV_BIND_MATRIX".
    /// An unknown semantic or ID changes nothing.
    void setJointsInput(const std::string& semantic, const std::string& streamId);

    /// The joints input "JOINT" (names, in the order of the matrices) or
    /// "INV_BIND_MATRIX" (16 floats for each joint, row by row); empty when it is not
    /// set and for any other semantic.
    StreamPtr getJointsInput(const std::string& semantic) const;

    /// Makes the stream `streamId` the vertex-weights input "JOINT" or "WEIGHT".
    /// An unknown semantic or ID changes nothing.
    void setVertexWeightsInput(const std::string& semantic, const std::string& streamId);

    /// The vertex-weights input "JOINT" (names, by the joint indices of influences) or
    /// "WEIGHT" (by their weight indices); empty when it is not set and for any other
    /// semantic.
    StreamPtr getVertexWeightsInput(const std::string& semantic) const;

    /// Puts `stream` in the place of the vertex-weights input "JOINT" or "WEIGHT", in
    /// the list of streams too. Other inputs that share the replaced stream follow.
    /// Nothing changes when `stream` is empty, the semantic another one, or the input
    /// not set.
    void replaceVertexWeightsStream(const std::string& semantic, const StreamPtr& stream);

    /// Puts `stream` in the place of `current` wherever the skin holds that: in the list
    /// of streams and as any of the four inputs. Nothing changes when either is empty or
    /// `current` is none of the skin's streams. A stream that is in the list already is
    /// not listed twice.
    void replaceStream(const StreamPtr& current, const StreamPtr& stream);

    /// What binds a mesh to joints: the bind shape matrix, the list of streams and which of
    /// them are the inputs.
    struct Binding
    {
        Eigen::Matrix4f bindShapeMatrix; ///< as `getBindShapeMatrix` gives it
        std::vector<StreamPtr> streams;  ///< all of the skin
        std::array<StreamPtr, 4> inputs; ///< as `getBinding` gives them
    };

    Binding getBinding() const;

    /// Replaces the binding by one that `getBinding` of this skin gave. Needs no memory.
    void restoreBinding(Binding binding);

    /// @}

    /// @name Influences
    /// @{

    /// The number of influences of each vertex.
    const std::vector<unsigned int>& getVCount() const;
    void setVCount(std::vector<unsigned int> vcount);

    /// Joint index and weight index of each influence, in vertex order.
    const std::vector<int>& getV() const;
    void setV(std::vector<int> v);

    /// Appends the influences of a vertex, in order: to `joints` the joint indices as they
    /// are stored, to `weights` the values of the vertex-weights input "WEIGHT".
    ///
    /// An influence that `v` has no room for, or whose weight index lies outside the
    /// stream, is left out of both; joint indices are not checked. Nothing is appended for
    /// a vertex without influences or outside `vcount`, nor without weights.
    /// Cost: linear in `vertex`, whose predecessors' counts are summed. Whoever needs all
    /// vertices goes through the lists once.
    void getVertexJointsAndWeights(int vertex, std::vector<int>& joints,
                                   std::vector<float>& weights) const;

    /// Appends the influences of a new vertex halfway between two others: every joint of
    /// either, in ascending order, with half the sum of its weights. Weights of a joint
    /// that a vertex lists more than once are added up. The result's weights sum to what
    /// the two vertices' weights average; they are not normalised.
    /// Cost: as two calls of `getVertexJointsAndWeights`.
    void calculateNewJointsAndWeights(int vertexA, int vertexB, std::vector<int>& joints,
                                      std::vector<float>& weights) const;

    /// @}

private:
    enum Input
    {
        JOINTS_JOINT,
        JOINTS_INV_BIND_MATRIX,
        WEIGHTS_JOINT,
        WEIGHTS_WEIGHT,
        INPUT_COUNT ///< also stands for "no such input"
    };

    static Input jointsInput(const std::string& semantic);
    static Input vertexWeightsInput(const std::string& semantic);
    StreamPtr getInput(Input input) const;
    void setInput(Input input, const std::string& streamId);
    void appendInfluences(int vertex, std::vector<Influence>& influences) const;

    IGeometryPtr m_sourceGeometry;
    std::vector<StreamPtr> m_streams; ///< none empty
    Eigen::Matrix4f m_bindShapeMatrix;
    std::array<StreamPtr, INPUT_COUNT> m_inputs; ///< each a member of m_streams, or empty
    std::vector<unsigned int> m_vcount;
    std::vector<int> m_v;
};
} // namespace velmoran::scene
