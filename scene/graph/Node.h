#pragma once

#include "core/Forward.h"
#include "core/utils/Revision.h"
#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/graph/ISceneContext.h"

#include <Eigen/Geometry>
#include <boost/enable_shared_from_this.hpp>
#include <boost/weak_ptr.hpp>

#include <set>
#include <string>
#include <vector>

namespace velmoran::scene
{
static_assert(EIGEN_MAX_ALIGN_BYTES == 16,
              "Node and other classes have another layout then: use the flags that the CMake "
              "package and pkg-config give.");

/// An element of the scene graph: a named transform with children and instances.
///
/// Transform: the local matrix is Translation(T) * R * Scaling(S), column vectors.
///     T, R and S are what the setters work on; the list of transformations that
///     the node was built from is kept beside them, unchanged. World matrices are
///     products along the parents and are not cached.
/// Ownership: always held by a `boost::shared_ptr<Node>`. A node holds its
///     children; parent and scene are remembered weakly. A subtree that someone
///     else holds survives its parent. Trees of any depth are released without
///     recursion.
/// Events: every change that others must see is announced on the event manager of
///     the owning scene, after it was made. When that scene is gone, nothing is
///     raised or recorded and `addNode` does nothing.
/// Threads: not locked. Callers that change nodes while others read them hold the
///     scene lock; reading from several threads at once is safe while nobody writes.
class VELMORAN_SCENE_EXPORT Node : public boost::enable_shared_from_this<Node>
{
public:
    /// A node of `scene` with the ID `generateID()` and an identity transform.
    /// An empty handle gives a node without scene.
    explicit Node(const boost::shared_ptr<ISceneContext>& scene);

    virtual ~Node();

    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// A copy for `scene` that has the ID `id` and this node's name, type, SID,
    /// T, R, S and clones of its transformation list; no layers, instances,
    /// children or parent. Records ID and SID with `scene` and raises nothing. Counts
    /// like any new node for `generateID`.
    boost::shared_ptr<Node> copyFor(const boost::shared_ptr<ISceneContext>& scene,
                                    const std::string& id) const;

    /// @name Identity
    /// @{

    /// "Node" and a number that counts the nodes made in this process, from 0.
    /// May be called from any thread.
    static std::string generateID();

    const std::string& getID() const;

    /// Sets the ID and records it with the scene.
    void setID(const std::string& id);

    const std::string& getSID() const;

    /// Sets the scoped identifier and records it with the scene.
    void setSID(const std::string& sid);

    const std::string& getName() const;

    /// Sets the name; need not be unique.
    void setName(const std::string& name);

    /// The node's type as text, e.g. "JOINT" or "NODE".
    const std::string& getType() const;
    void setType(const std::string& type);

    /// @}

    /// @name Hierarchy
    /// @{

    /// Appends `child`, makes this node its parent, raises the child's
    /// transformation events and then "SceneTopologyUpdate" ("NodeAdded").
    /// Does nothing when `child` is empty, this node itself or one of its
    /// ancestors, or when the scene is gone. A node may be a child of two parents
    /// or twice of one; its parent is the one that added it last.
    /// A child that has children costs a walk up to the root or over the child's
    /// subtree, whichever is shorter.
    void addNode(const boost::shared_ptr<Node>& child);

    /// Removes every entry of `child`, clears its parent link if it points here and
    /// raises "SceneTopologyUpdate" ("NodeRemoved"), also when `child` was not a
    /// child. An empty handle is ignored. Linear in the number of children.
    void removeChild(const boost::shared_ptr<Node>& child);

    /// Child `index` in the order of adding; empty when there is none.
    boost::shared_ptr<Node> getChildNode(unsigned int index) const;
    unsigned int getChildCount() const;

    /// The children in the order of adding; valid until they are changed.
    const std::vector<boost::shared_ptr<Node>>& getChildren() const;

    /// The parent; empty for a root and when the parent is gone.
    boost::shared_ptr<Node> getParent() const;

    /// @}

    /// @name Instances
    /// Empty handles are skipped, indices past the end give empty handles. The node shares what it
    /// is given. Only what says so raises an event.
    /// @{

    /// Appends `camera`; the scene's record of it is another thing (`CameraInstance`).
    void addInstanceCamera(const CameraPtr& camera);
    unsigned int getInstanceCameraCount() const;
    CameraPtr getInstanceCamera(unsigned int index) const;

    /// Appends `light` and raises "NodeAddedLight".
    void addInstanceLight(const LightPtr& light);
    unsigned int getInstanceLightCount() const;
    LightPtr getInstanceLight(unsigned int index) const;

    /// Appends `instance`, also one that is there. Raises nothing.
    void addInstanceGeometry(const InstanceGeometryPtr& instance);

    /// Removes the first entry that holds the same object.
    void removeInstanceGeometry(const InstanceGeometryPtr& instance);
    const std::vector<InstanceGeometryPtr>& getInstancedGeometries() const;
    unsigned int getInstanceGeometryCount() const;
    InstanceGeometryPtr getInstanceGeometry(unsigned int index) const;

    /// The geometry instances, then those of the controller instances; empty where a
    /// controller instance has none.
    std::vector<InstanceGeometryPtr> getAllInstancedGeometries() const;

    /// Appends `instance`, also one that is there. Raises nothing.
    void addInstanceController(const InstanceControllerPtr& instance);
    const std::vector<InstanceControllerPtr>& getInstancedControllers() const;
    unsigned int getInstanceControllerCount() const;
    InstanceControllerPtr getInstanceController(unsigned int index) const;

    /// Binds `material` to the material symbol of a primitive and raises
    /// "NodeMaterialChanged". `geometryIndex` counts the node's geometry instances
    /// and then those of its controller instances; `primitiveIndex` the primitives
    /// of that mesh. Does nothing when `material` is empty, an index is out of
    /// range or the geometry is not a mesh. A symbol that the instance has not
    /// bound stays unbound.
    void setMaterial(const MaterialPtr& material, unsigned int geometryIndex,
                     unsigned int primitiveIndex);

    /// @}

    /// @name Layers
    /// By the IDs or names of the scene's `LayerManager`. By name: an unknown name is created, also
    /// by `inLayer`, which is a change of the scene then; without scene nothing happens and the
    /// answer is false.
    /// @{

    /// Adds the node to a layer and raises "NodeAddedLayer", also when it was in it.
    void addToLayer(int layerID);

    /// The same by name.
    void addToLayer(const std::string& layerName);

    /// Takes the node out of a layer and raises "NodeRemovedLayer", also when it was
    /// not in it.
    void removeFromLayer(int layerID);

    /// The same by name.
    void removeFromLayer(const std::string& layerName);

    /// Whether the node is in a layer.
    bool inLayer(int layerID) const;

    /// The same by name.
    bool inLayer(const std::string& layerName) const;

    const std::set<int>& getLayers() const;

    /// The name of a layer; "" when there is none with this ID or the scene is gone.
    std::string getLayerName(int layerID) const;

    /// The names of the node's layers in ascending order of their IDs.
    std::vector<std::string> getLayersNames() const;

    /// Whether the node is outside layer 0 ("hidden").
    bool isVisible() const;

    /// Takes the node out of layer 0 or puts it in, with the events of `removeFromLayer`
    /// or `addToLayer`, also when it was so before. Nodes below stay as they are.
    void setVisible(bool visible);

    /// @}

    /// @name Transform
    /// Each change raises "NodeTransformationUpdate" and "SceneUpdate" once, unless said otherwise.
    /// @{

    void setTranslation(const Eigen::Translation<float, 3>& translation);

    /// T += `offset`.
    void addTranslation(const Eigen::Vector3f& offset);

    /// The same with single floats.
    void addTranslation(float x, float y, float z);
    Eigen::Translation<float, 3> getTranslation() const;

    /// Replaces the rotation; the linear part is taken as it is.
    void setRotation(const Eigen::Transform<float, 3, Eigen::Affine>& rotation);
    void setRotation(const Eigen::Matrix4f& rotation);

    /// Same as `rotate`.
    void addRotation(const Eigen::Matrix3f& rotation);
    Eigen::Transform<float, 3, Eigen::Affine> getRotation() const;

    /// Replaces the scale.
    void setScale(const Eigen::Vector3f& scale);

    /// Replaces the scale, like `setScale`; it does not multiply.
    void scale(const Eigen::Vector3f& scale);
    Eigen::Vector3f getScale() const;

    /// Steps by `offset` in the node's own rotated and scaled frame:
    /// T += S * (R * offset + the rotation's own translation, mostly zero).
    void move(const Eigen::Vector3f& offset);

    /// The same with single floats.
    void move(float x, float y, float z);

    /// R = R * `rotation`, each column then normalised to unit length, which removes
    /// the drift of repeated rotations. A column of zeros stays zero.
    void rotate(const Eigen::Matrix3f& rotation);

    /// Sets T and R together.
    void setTransformations(const Eigen::Translation<float, 3>& translation,
                            const Eigen::Matrix4f& rotation);

    /// Sets T from the matrix's last column and R from its upper left 3x3 with each
    /// column normalised (a column of zeros stays zero). S is left as it is.
    void setTransformations(const Eigen::Matrix4f& matrix);

    /// T += last column of `matrix`, R = R * its upper left 3x3 as it is.
    void addTransformation(const Eigen::Matrix4f& matrix);

    /// Folds one element of a transformation list into T, R and S and appends it to
    /// the stored list. An empty handle is ignored.
    ///
    /// Rotate turns (`rotate`; the axis is used as stored, one of zeros turns nothing), scale
    /// replaces S, translate moves in the frame reached so far. A matrix moves by its last column,
    /// turns by the rotation of its linear part's polar decomposition and sets S to the diagonal of
    /// the scaling; its three steps raise a pair of events each. One with a NaN or an infinity in
    /// its linear part does not turn, and S becomes that part's diagonal. Look-at, skew and kinds
    /// of others are only kept and raise nothing.
    void addTransformation(const ITransformationPtr& transformation);

    /// The local matrix.
    const Eigen::Matrix4f& getTransformations() const;

    /// The world matrix: the parent's times the local one. Linear in the depth.
    Eigen::Matrix4f getCombinedTransformations() const;

    /// The world matrices of this node and all nodes below it, in the order of
    /// `getNodesBelow`. One pass: linear in the number of nodes, plus the depth, and
    /// once more the depth for each node for which `isListedTwice`.
    std::vector<Eigen::Matrix4f> getCombinedTransformationsBelow() const;

    /// The product of the rotations along the parents. Linear in the depth.
    Eigen::Transform<float, 3, Eigen::Affine> getCombinedRotations() const;

    /// Sets R so that `getCombinedRotations` becomes `rotation`, which is taken as it is,
    /// its last column included. A parent whose rotations can't be inverted gives NaN or
    /// infinities. Linear in the depth.
    void setCombinedRotations(const Eigen::Matrix4f& rotation);

    /// The list of transformations that the node was built from, in order.
    const std::vector<ITransformationPtr>& getOriginalTransformations() const;

    /// Replaces the list only; T, R and S stay and nothing is raised. Empty handles
    /// in it are left out.
    void setOriginalTransformations(const std::vector<ITransformationPtr>& transformations);

    /// Exchanges the list with `transformations`, which has no empty handles. Needs no memory.
    void exchangeOriginalTransformations(std::vector<ITransformationPtr>& transformations);

    /// Moves on when elements are added to the list or it is replaced; the elements
    /// themselves say whether they changed.
    const core::utils::Revision& getListRevision() const;

    /// Recomputes the local matrix from T, R and S, then raises
    /// "NodeTransformationUpdate" and "SceneUpdate". Children raise nothing.
    void triggerTransformationUpdate();

    /// @}

    /// Whether several entries in lists of children hold this node, or did once: false
    /// means that one at most does.
    bool isListedTwice() const;

    /// @name Bounds in world space
    /// The geometries' corner of greatest (least) coordinates goes through the world matrix of its
    /// node, and those of this node and all nodes below it are combined. Of each node it is this
    /// one corner that is transformed: under a rotation the result does not enclose the geometry. A
    /// node counts with its geometry instances and those of its controller instances; where there
    /// is none, at it and below, the answer is (0, 0, 0). Geometries compute their bounds when
    /// first asked, which counts as writing. Linear in the number of nodes, plus the depth.
    /// @{

    Eigen::Vector3f getBVMax() const;
    Eigen::Vector3f getBVMin() const;

    /// The middle between the two.
    Eigen::Vector3f getBVCenter() const;

    /// @}

    /// @name Search
    /// A node is met before its children, children in order; one that is listed more than once only
    /// where it is met first.
    /// @{

    /// This node and all nodes below it, each once. Linear.
    std::vector<boost::shared_ptr<Node>> getNodesBelow();

    /// The first node with this ID, this node included; empty when none. Linear.
    boost::shared_ptr<Node> findByID(const std::string& id);

    /// The first node with this name, this node included; empty when none. Linear.
    boost::shared_ptr<Node> findByName(const std::string& name);

    /// @}

    /// The counter that moves on when a child is added to or removed from this node, or
    /// its ID is set.
    const TreeRevisionPtr& getTreeRevision() const;

private:
    friend class PoseWriter;

    struct WithID
    {
    };
    Node(WithID, const boost::shared_ptr<ISceneContext>& scene, const std::string& id);

    void updateLocalMatrix();
    void noteTreeChange();
    static unsigned int takeNumber();
    bool isSelfOrAncestor(const Node& candidate) const;
    bool isAddingHeard() const;
    void raiseTopologyUpdate(const char* kind, const Node& child) const;
    void raiseLayerEvent(const core::event::EventType& type, int layerID) const;

    std::string m_id;
    std::string m_sid;
    std::string m_name;
    std::string m_type;
    std::set<int> m_layers;
    boost::weak_ptr<ISceneContext> m_sceneManager;
    TreeRevisionPtr m_treeRevision;
    boost::weak_ptr<Node> m_parent;
    std::vector<boost::weak_ptr<Node>> m_formerParents; ///< other nodes that list this one
    std::vector<boost::shared_ptr<Node>> m_children;
    std::vector<CameraPtr> m_instanceCameras;
    std::vector<LightPtr> m_instanceLights;
    std::vector<InstanceGeometryPtr> m_instanceGeometries;
    std::vector<InstanceControllerPtr> m_instanceControllers;
    Eigen::Vector3f m_translation;
    Eigen::Vector3f m_scale;
    Eigen::Transform<float, 3, Eigen::Affine> m_rotation;
    Eigen::Matrix4f m_transformations; ///< local matrix, column-major
    std::vector<ITransformationPtr> m_originalTransformations;
    core::utils::Revision m_listRevision;
};
} // namespace velmoran::scene
