#pragma once

#include "core/event/EventBase.h"
#include "core/logger/Logger.h"
#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/graph/ISceneContext.h"
#include "scene/manager/Library.h"
#include "scene/manager/UpAxis.h"

#include <boost/enable_shared_from_this.hpp>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace velmoran::scene
{
class IdentifierRegister;
class NodeIndex;
class SceneAttempt;
class SceneWorker;

/// Owner of one scene: its node tree, libraries, layers and worker thread.
///
/// A new scene manager holds the effect "defaultEffect" (file "default.cgfx"), the
/// material "defaultMaterial" that uses it, the six built-in layers, the name
/// "DefaultScene" and the ID "defaultSceneID".
///
/// Worker thread: turns every 10 ms. A turn takes the lock of the controller list
///     and the scene lock (both or none), calls `update` on every controller in
///     order, lets go of the locks and raises "SyncScene" once if any of them
///     reported a change. After a `std::bad_alloc` out of `update` or of a handler of
///     "SyncScene" the next turn comes as ever; other exceptions out of `update` are not caught.
/// Libraries: lists in insertion order; look-ups are linear and the first match
///     wins; unknown identifiers and indices out of range give empty handles. Empty
///     handles are left out wherever something is added or installed. The scene shares
///     what it is given: what leaves a list lives on with whoever else holds it. Installing
///     replaces a list, adding appends without looking for clashes; both record the
///     identifiers and raise nothing, unless said otherwise. Getters of lists copy them.
/// Identifiers: every identifier that begins with "OID" and comes into a library or to
///     a node of this scene is recorded, so that `generateID` never gives it out.
/// Events handled, by which other parts of the application edit materials. The first
///     field is not read; an event with too few fields is ignored, but see the last one.
///     Handlers run on the thread that raises the event, which holds the scene lock where
///     others may read.
///
/// | event                        | fields                          | effect                 |
/// |------------------------------|---------------------------------|------------------------|
/// | "L_NewEffect"                | -, ID, file name                | adds an effect         |
/// | "L_NewMaterial"              | -, ID, effect's ID              | adds a material        |
/// | "L_MaterialParameterUpdated" | -, material's ID, name, value,  | sets or adds the       |
/// |                              | type                            | parameter; the value   |
/// |                              |                                 | of a "texture" is a    |
/// |                              |                                 | file name, stored as   |
/// |                              |                                 | the ID of its image    |
/// | "L_MaterialTechniqueChanged" | -, material's ID, technique     | sets the technique;    |
/// |                              |                                 | clears it without one  |
///
/// Out of memory: an operation that throws `std::bad_alloc` has changed nothing, here or in
///     what belongs to the scene: tree, layers, libraries, identifiers, geometry and its
///     streams, skins, players of animations. It can be called again. What it raised before
///     that can't be taken back: with listeners, nodes that were announced are announced as
///     removed. Where the change is complete and only its announcement fails, by
///     `std::bad_alloc` or by an exception of a handler, the change stays. A log message
///     for which there is no memory, or no room on the disk, is dropped. A controller whose
///     `update` throws `std::bad_alloc` misses that turn.
/// Ownership: create it with `boost::make_shared`. It holds its nodes, geometry and
///     libraries; nodes, cameras and lights remember it weakly. Dropping the last
///     handle stops the thread and frees the scene, also on the scene's own worker
///     (from a controller or a "SyncScene" handler): then the thread ends after
///     that turn.
/// Threads: `lockScene`/`unlockScene`, `stop`, the controller list, `setClock`,
///     `getClock`, `setEventManager`, `getEventManager`, `triggerEvent` and the
///     registrations may be called from any thread at any time. Everything else
///     takes no lock: callers hold the scene lock (`SceneLock`) where another thread may
///     read or change the scene. That goes for nodes of this scene that hang in no tree
///     yet, too: they record identifiers and layers here. Look-ups may run on several
///     threads at once while nobody changes the scene.
///     The scene lock is not recursive. Events are raised on the thread that makes the
///     change, under whatever that thread holds: handlers of changes that are made in
///     `update`, or by a caller who holds the scene lock, run under it.
class VELMORAN_SCENE_EXPORT SceneManager : public core::event::EventBase,
                                           public boost::enable_shared_from_this<SceneManager>,
                                           public ISceneContext
{
public:
    /// Builds an empty scene and starts its worker; returns when that runs. Raises
    /// "SceneUpdate" ("MaterialList") for the default material. `eventManager` may
    /// be empty. The geometry manager made here has no event manager until
    /// `setEventManager` is called.
    explicit SceneManager(const core::event::EventManagerPtr& eventManager);

    /// Stops the worker as `stop` does, then releases the root and the controllers,
    /// then the rest.
    ~SceneManager() override;

    /// @name Life and worker thread
    /// @{

    /// Stops the worker for good and detaches from the event manager. A second
    /// call only detaches. Waits for the running turn; called on the worker itself (by a
    /// controller or a handler), it does not wait for that turn; the thread ends after
    /// it. As every detaching it waits for handlers of this scene on other threads. Do
    /// not call it, nor drop the last handle, while holding the scene lock or another
    /// one that an `update` or such a handler wants.
    void stop();

    core::event::EventManagerPtr getEventManager() override;

    /// Replaces the event manager of the scene and of its geometry manager. Waits for
    /// handlers on other threads (see `EventBase`). A "SyncScene" that is being raised may
    /// still reach the one before.
    void setEventManager(boost::shared_ptr<core::event::EventManager> eventManager) override;

    using core::event::EventBase::triggerEvent;
    void triggerEvent(core::event::Event event) override;

    /// Keeps controller updates out until `unlockScene`, on the same thread; waits for the
    /// running turn. Not recursive, and not from a controller's `update`: the worker holds
    /// this lock then.
    void lockScene();

    /// Ends `lockScene`, on the thread that called it.
    void unlockScene();

    /// Adds a controller to those that the worker drives: behind all others if it
    /// only reads, else in front of them. Then calls its `attach`, with no lock
    /// held, if this scene is owned by a handle. May be called while holding the
    /// scene lock and from a controller's `update` (it runs from the next turn on);
    /// anywhere else it waits for the running turn. An empty handle is ignored.
    void addSceneController(const ISceneControllerPtr& controller);

    /// Takes out the first entry of this controller. Once it has returned,
    /// the controller is not updated any more; from `update`, after this turn. Waits as
    /// adding does. Does nothing when there is no such entry.
    void removeSceneController(const ISceneControllerPtr& controller);

    /// Replaces the worker's time source; the time of the last update stays. An empty
    /// handle is ignored.
    void setClock(const core::system::IClockPtr& clock);

    /// The worker's time source; never empty.
    core::system::IClockPtr getClock() const;

    /// Appends; the scene shares and keeps the object, and never calls it. An empty handle is
    /// ignored.
    void addEvaluator(const EvaluatorPtr& evaluator);

    /// Takes out the first entry of this object, if there is one.
    void removeEvaluator(const EvaluatorPtr& evaluator);
    unsigned int getEvaluatorsCount() const;
    EvaluatorPtr getEvaluatorAt(unsigned int index) const;

    /// @}

    /// @name Parts of the scene
    /// @{

    /// The geometry library; never empty.
    GeometryManagerPtr getGeometryManager() const;

    /// Installs another geometry library, gives it this scene's event manager and
    /// records its identifiers. The one before keeps its event manager. An empty handle
    /// is ignored.
    void setGeometryManager(const GeometryManagerPtr& geometryManager);

    /// The layers; never empty, the same for the life of the scene.
    LayerManagerPtr getLayerManager() override;

    /// The manager that the last `setAnimationsLibrary` made; empty before.
    AnimationManagerPtr getAnimationManager() const;

    /// The counter that changes of nodes move on; never empty.
    TreeRevisionPtr getTreeRevision() const override;

    /// @}

    /// @name Identifiers and settings
    /// @{

    /// "OID" and the next number whose identifier is not in use. The result is not
    /// recorded: a caller that wants it reserved calls `addID`.
    std::string generateID();

    /// Records an identifier that begins with "OID"; ignores any other.
    void addID(std::string id) override;

    /// Sets the ID of the scene itself and records it.
    void setSceneID(const std::string& id);
    const std::string& getSceneID() const;
    void setSceneName(const std::string& name);
    const std::string& getSceneName() const;

    /// Metres in one scene unit; 1 at the start. Negative values and NaN are ignored.
    /// Nothing is scaled by it.
    void setMeterUnit(float meters);
    float getMeterUnit() const;

    /// The axis that points up; `Y_UP` at the start. Nothing is turned but new cameras.
    void setUpAxis(UpAxis axis);
    UpAxis getUpAxis() const;

    /// @}

    /// @name Node tree
    /// @{

    /// The root; made, with this scene as its owner, when there is none yet. Needs a
    /// scene that is owned by a handle then, and counts as a change of the scene.
    NodePtr getRoot();

    /// Replaces the root; an empty handle clears it. Raises nothing.
    void setRoot(const NodePtr& root);

    /// The first node with this ID, a node before its children and children in
    /// order; empty when there is none. On an unchanged tree in constant time on
    /// average. The first look-up after a change walks the tree, the second builds an
    /// index in one walk. Adding, removing and renaming a node of this scene counts as a
    /// change, also where it hangs in no tree yet.
    NodePtr getNodeByID(const std::string& id) const;

    /// The same below `from`, which is included; empty when `from` is. Linear.
    NodePtr getNodeByID(const std::string& id, const NodePtr& from) const;

    /// As `getNodeByID`, by name. Linear.
    NodePtr getNodeByName(const std::string& name) const;

    /// The same below `from`, which is included; empty when `from` is. Linear.
    NodePtr getNodeByName(const std::string& name, const NodePtr& from) const;

    /// All nodes of the tree in pre-order, each once. Linear.
    std::vector<NodePtr> getNodeArray() const;

    /// The same below `from`, which is included.
    std::vector<NodePtr> getNodeArray(const NodePtr& from) const;

    /// Removes a node from its parent and raises "SceneTopologyUpdate" and "SceneUpdate".
    /// An empty handle and a node without parent are left alone. Linear in its siblings.
    void removeNode(const NodePtr& node);

    /// Removes the first node whose *name* is `name`; callers pass names here.
    void removeNodeByID(const std::string& name);

    /// @}

    /// @name Images
    /// @{

    void setImageLibrary(const std::vector<ImagePtr>& images);

    /// Appends `image` and raises "SceneUpdate". An image whose ID is taken gets a
    /// generated one when its file name differs, else it is discarded with a warning.
    void addImage(const ImagePtr& image);
    std::vector<ImagePtr> getImageLibrary() const;
    ImagePtr getImageByID(const std::string& id) const;
    ImagePtr getImageByFilename(const std::string& fileName) const;
    unsigned int getImageCount() const;
    ImagePtr getImageAt(unsigned int index) const;

    /// Sets the surrounding image, adding it to the images if it is not one of them;
    /// an empty handle clears it. Raises "SceneSurroundingUpdate".
    void setSurrounding(const ImagePtr& image);
    ImagePtr getSurrounding() const;

    /// @}

    /// @name Effects
    /// @{

    void setEffectLibrary(const std::vector<EffectPtr>& effects);

    /// Appends, also where the ID is taken: look-ups find the first one then.
    void addEffect(const EffectPtr& effect);
    std::vector<EffectPtr> getEffectLibrary() const;
    EffectPtr getEffectByID(const std::string& id) const;
    EffectPtr getEffectByFilename(const std::string& fileName) const;

    /// Removes every material that uses the effect, by its ID, then this very effect.
    /// Raises nothing, for the materials neither: announce them where it matters. An empty
    /// handle is ignored. Linear.
    void removeEffect(const EffectPtr& effect);

    /// "EffectLibrary: (effectID, filename)", then a line "ID, file name" per effect.
    std::string effectLibraryToString() const;

    /// @}

    /// @name Materials
    /// @{

    /// Installs the list and raises "SceneUpdate" ("MaterialList").
    void setMaterialList(const std::vector<MaterialPtr>& materials);

    /// Appends and raises "SceneUpdate" ("MaterialList"); does not look for clashes.
    void addMaterial(const MaterialPtr& material);
    std::vector<MaterialPtr> getMaterialList() const;
    MaterialPtr getMaterialWithID(const std::string& id) const;

    /// `Material::toString` of every material, each followed by a line end.
    std::string materialLibraryToString() const;

    /// @}

    /// @name Cameras
    /// @{

    void setCameraLibrary(const std::vector<CameraPtr>& cameras);
    CameraPtr getCameraByID(const std::string& id) const;
    unsigned int getCameraCount() const;
    CameraPtr getCameraAt(unsigned int index) const;

    /// Appends `instance`, records its SID and logs it. Its node and camera are held by
    /// others (see `CameraInstance`). Raises nothing.
    void addCameraInstance(const CameraInstancePtr& instance);
    CameraInstancePtr getCameraInstanceBySID(const std::string& sid) const;
    unsigned int getCameraInstanceCount() const;
    CameraInstancePtr getCameraInstanceAt(unsigned int index) const;

    /// Makes a camera of `type` (`Camera::Type`) with a generated ID and the name
    /// "VMCamera" and places it at the node `nodeID`, which is made when there is
    /// none: below the node `parentID`, or below the root when that is unknown, with
    /// the ID `nodeID` or a generated one when that is empty (which raises the events of
    /// `Node::addNode`). The node, new or not, is
    /// turned once so that the camera suits the scene's up axis. Raises
    /// "SceneNewCamera" with the SID of the camera's instance and returns the
    /// camera's ID. Throws `boost::bad_weak_ptr`, with nothing done, when no handle
    /// owns this scene.
    std::string createNewCamera(int type, const std::string& nodeID, const std::string& parentID);

    /// @}

    /// @name Lights
    /// @{

    void setLightLibrary(const std::vector<LightPtr>& lights);

    /// Appends and answers true; false for an empty handle and a taken ID.
    bool addLight(const LightPtr& light);
    std::vector<LightPtr> getLightLibrary() const;
    LightPtr getLightByID(const std::string& id) const;

    /// Makes a light of `type` (`Light::LightType`) and places it at the node
    /// `nodeID`, which is made when there is none: below the node `parentID`, or below
    /// the root, with an ID of its own. The node's name becomes `lightID`. A light
    /// whose ID is taken is placed all the same, with a warning. Throws
    /// `boost::bad_weak_ptr`, with nothing done, when no handle owns this scene.
    void createNewLight(int type, std::string lightID, const std::string& nodeID,
                        const std::string& parentID);

    /// @}

    /// @name Controllers (skins and morphs)
    /// @{

    void setControllersLibrary(const std::vector<ControllerPtr>& controllers);

    /// Appends, also where the ID is taken: look-ups find the first one then.
    void addController(const ControllerPtr& controller);
    std::vector<ControllerPtr> getControllersLibrary() const;
    ControllerPtr getControllerById(const std::string& id) const;

    /// @}

    /// @name Animations
    /// @{

    /// Installs the list, makes a new animation manager and lets the worker drive it
    /// in place of the one before, which waits for the running turn.
    void setAnimationsLibrary(const std::vector<AnimationPtr>& animations);

    /// Appends; the animation manager stays and plays what it plays.
    void addAnimation(const AnimationPtr& animation);
    std::vector<AnimationPtr> getAnimationsLibrary() const;

    /// Takes animation `index` out of the list; nothing when there is none. An animation that is
    /// being played goes on. Raises nothing.
    void removeAnimation(unsigned int index);

    /// Empties the list, as `removeAnimation` does for one.
    void removeAllAnimations();

    /// @}

    /// @name Physics description
    /// Lists as all others: the setters replace, record identifiers and raise nothing.
    /// @{

    void setPhysicsSceneLibrary(const std::vector<PhysicsScenePtr>& scenes);
    std::vector<PhysicsScenePtr> getPhysicsSceneLibrary() const;
    PhysicsScenePtr getPhysicsSceneById(const std::string& id) const;

    /// The scenes of the list above, or others, that are put to work. No IDs are recorded.
    void setInstancedPhysicsScenes(const std::vector<PhysicsScenePtr>& scenes);
    std::vector<PhysicsScenePtr> getInstancedPhysicsScenes() const;
    void setPhysicsMaterialLibrary(const std::vector<PhysicsMaterialPtr>& materials);
    std::vector<PhysicsMaterialPtr> getPhysicsMaterialLibrary() const;
    PhysicsMaterialPtr getPhysicsMaterialById(const std::string& id) const;
    void setPhysicsModelLibrary(const std::vector<PhysicsModelPtr>& models);
    std::vector<PhysicsModelPtr> getPhysicsModelLibrary() const;
    PhysicsModelPtr getPhysicsModelById(const std::string& id) const;

    /// @}

    /// @name Merging
    /// Runs on the calling thread, takes no lock and leaves the incoming scene as it was; callers
    /// hold the scene lock where others may read. Every clash is resolved and logged. The suffix
    /// "__renamed__" has no counter: an image or geometry whose new ID is taken, too, is not found
    /// by it, and what refers to it gets the one that has the ID. Incoming images, effects and
    /// materials clash with what this scene holds, not with each other; nodes do, since each is
    /// added as it is met. Results map old identifiers to new ones, for renamed items only.
    /// @{

    /// The flags of `mergeSceneManager`, to be combined.
    enum MergeFlags
    {
        DISCARD_REPEATED_GEOMETRIES = 1, ///< instead of renaming the incoming one
        MATERIAL_FLAG = 2,               ///< passed on; changes nothing
        DISCARD_REPEATED_IMAGES = 4,     ///< instead of renaming
        DISCARD_REPEATED_LAYERS = 8,     ///< instead of renaming
        DISCARD_REPEATED_NODES = 16,     ///< with all that is below them
        MERGE_REPEATED_NODES = 32        ///< children of a repeated node join the present one
    };

    /// Merges geometries, images, effects, materials, layers and the node tree of
    /// `other` into this scene, in this order. `other`'s root arrives as a child of
    /// the node `parentNodeID`, or of the root when there is none. Then raises
    /// "SceneUpdate", "SceneUpdate" ("MaterialList") and "SyncScene".
    ///
    /// Cameras, lights, controllers, animations and physics are not merged. An empty
    /// handle and this scene itself do nothing at all; a scene without root adds no
    /// node. Geometries that do not clash are shared with `other`, everything else is
    /// copied; clones of geometries keep the material symbols of their primitives. Linear in the
    /// nodes present and merged, as long as no listener edits the tree meanwhile. Throws
    /// `boost::bad_weak_ptr`, with nothing done, when no handle owns this scene. Reads `other`:
    /// hold its scene lock, too, where its own worker or another thread may change it, and where
    /// two threads merge, in a fixed order.
    void mergeSceneManager(const boost::shared_ptr<SceneManager>& other, int flags,
                           std::string parentNodeID);

    /// A clashing image is discarded, or renamed with the suffix "__renamed__".
    std::map<std::string, std::string> mergeImageLibrary(const std::vector<ImagePtr>& images,
                                                         bool discardRepeated);

    /// A clashing effect is discarded when its file name is that of the present one,
    /// else renamed with a generated identifier.
    std::map<std::string, std::string> mergeEffectLibrary(const std::vector<EffectPtr>& effects);

    /// A clashing material is discarded when its effect, after `effectRenames`, is
    /// that of the present one, else renamed with a generated identifier. Copies keep
    /// their technique and get parameter objects of their own; the values of
    /// parameters of type "texture" go through `imageRenames`. `flag` changes nothing.
    /// Raises "SceneUpdate" ("MaterialList").
    std::map<std::string, std::string>
    mergeMaterialLibrary(const std::vector<MaterialPtr>& materials,
                         const std::map<std::string, std::string>& imageRenames,
                         const std::map<std::string, std::string>& effectRenames, bool flag);

    /// Copies `source` and what is below it under `parent`. A node whose ID is taken
    /// is left out with its subtree (`discardRepeated`), or merged into the child of
    /// `parent` that has the ID (`mergeRepeated`, when there is one), or renamed. A
    /// layer without entry in `layerMap` goes to this scene's layer of the same name.
    /// An instance of a geometry that this scene lacks is skipped with an error; a
    /// symbol whose material it lacks stays, with an empty handle; materials are those
    /// of the beginning. A copy raises its transformation events once, as it is added.
    /// `effectRenames` changes nothing. Empty handles do nothing. Linear in the nodes
    /// present and merged.
    void mergeSceneGraph(const NodePtr& parent, const NodePtr& source,
                         const std::map<std::string, std::string>& geometryRenames,
                         const std::map<std::string, std::string>& effectRenames,
                         const std::map<std::string, std::string>& materialRenames,
                         const std::map<int, int>& layerMap, bool discardRepeated,
                         bool mergeRepeated);

    /// @}

    /// @name Avatars
    /// Skinned meshes with a skeleton of nodes of the type "JOINT". All of these run on the calling
    /// thread and take no lock: hold the scene lock where others may read, also that of the other
    /// scene. Worlds are products along the parents, column vectors.
    /// @{

    /// The vertices of a skinned mesh in its present pose: linear blend skinning
    /// (Magnenat-Thalmann, Laperriere, Thalmann 1988).
    ///
    /// Each vertex p becomes N * S * B * p, where N is the world matrix of `node`, B the
    /// skin's bind shape matrix and S the sum of weight * joint's world * joint's inverse
    /// bind matrix over the vertex's influences. The weights are taken as they are, not
    /// normalised; a vertex without influences becomes zeros. p is the vertex's first
    /// four floats; a missing z is 0, a missing w is 1. The fourth is not divided by;
    /// floats beyond the fourth are taken over.
    ///
    /// Inputs: `vertices`, tuples of any stride in the order of the skin's `vcount`;
    ///     `weightJoints`, the names (`Stream::getNameList`) in which the joint indices of
    ///     influences count; `weights`, in which weight indices count; `bindJoints`, the
    ///     names of the joints in the order of `inverseBindMatrices`, 16 floats each, row
    ///     by row. A joint that is not in `bindJoints` takes the inverse bind matrix at its
    ///     own joint index. Joints are nodes of `sceneManager` with the name as ID.
    /// Result: a new stream with ID and stride of `vertices` that stores equal tuples
    ///     again, of as many tuples. Empty when `vertices` has none or its stride is not
    ///     positive; an empty handle when `vertices` is one.
    /// Broken data: an influence is left out of the sum when `v` ends before it, when its
    ///     joint index, weight index or matrix lies outside its list, when its joint has no
    ///     node, or when a list that it needs is missing. Vertices beyond `vcount` have no
    ///     influences. Without `node`, N is the identity. Changes nothing else.
    /// Precision: each joint's matrices are multiplied once, in double precision; sums are
    ///     single. Cost: linear in the vertices, influences and names, plus a walk
    ///     from each joint up to the root, of which shared parts are walked once.
    static StreamPtr
    calculateSkinnedVerticesStream(const boost::shared_ptr<SceneManager>& sceneManager,
                                   const NodePtr& node, const StreamPtr& vertices,
                                   const SkinPtr& skin, const StreamPtr& weightJoints,
                                   const StreamPtr& weights, const StreamPtr& inverseBindMatrices,
                                   const StreamPtr& bindJoints);

    /// Appends the nodes of the type "JOINT" below `node`, which is included, to `joints`: a
    /// node before its children, children in order, a node that several parents list where
    /// it is met first. Appends to `parents`, for each of them, the index in `joints` of
    /// the first entry that is its parent; -1 when its parent is not a joint, or not in
    /// `joints`. An empty handle appends nothing. Linear.
    static void transverseSceneForJoints(const NodePtr& node, std::vector<NodePtr>& joints,
                                         std::vector<int>& parents);

    /// Moves this scene's skeleton to new joint positions, and its skinned mesh along.
    ///
    /// `joints` is a scene whose only geometry is a mesh whose vertices list is a single
    /// input; the first three floats of its i-th tuple are the new world position of the
    /// i-th joint that `transverseSceneForJoints` collects from this scene's root. A tuple
    /// that is not three finite numbers is no position. This scene must have a single
    /// controller, with a skin.
    ///
    /// Joints: afterwards the world translation of each joint is its position. The joint
    ///     turns by the smallest rotation that takes the direction from it to its child
    ///     from the old to the new one (Rodrigues 1840); that child is the first joint
    ///     below it, with or without other nodes between. A joint without one, or
    ///     that coincides with it before or after, turns as the joint above it. Scales that
    ///     nodes hold as such stay; below an uneven scale the turn is the rotation next to it that
    ///     keeps the bone's direction in the joint's own frame. Nodes that are not joints keep
    ///     their local matrices and so move along.
    /// Mesh: vertices keep their values. What one joint carries keeps its place in that
    ///     joint's frame (the mesh node's own matrix apart); what several carry is blended
    ///     between them. So the bind shape matrix stays, and the inverse bind matrices
    ///     only take up what `Node::setTransformations` takes away of a rotation that
    ///     was none. The skin gets them in a new stream; whoever shares the old one keeps
    ///     that.
    /// Events: those of `Node::setTransformations`, once for each joint in order, for
    ///     "sacrum" last, after the skin is ready.
    /// Errors: an empty handle does nothing. Else the first of these that holds is
    ///     logged and nothing is changed:
    ///     "Invalid joints scene. Found more than one geometry." (or none),
    ///     "Invalid joints scene. Found more than one vertices stream mapping." (or none,
    ///     or no mesh), "Invalid joints scene. Found different number of joints.",
    ///     "Invalid scene. Scene must have one and only one controller.",
    ///     "Invalid scene. Scene must have one and only one controller with a valid skin.".
    /// Cost: linear in the nodes of this scene, without regard to its vertices.
    void replaceJoints(const boost::shared_ptr<SceneManager>& joints);

    /// Blends this scene's avatar with `target`'s: 0 gives the target's shape, 1 keeps this
    /// scene's own.
    ///
    /// An avatar is the mesh "human-template-lib", skinned by the first controller instance
    /// of the node "human-template", with a skeleton that begins at the node "sacrum".
    /// The "sacrum" of both scenes is set to the identity first, where there is one.
    /// Vertices: every float of this avatar's vertex stream (the positions) becomes
    ///     own * ratio + target's * (1 - ratio), both posed as by
    ///     `calculateSkinnedVerticesStream`; that is in world space. They stay as they are
    ///     when the two meshes differ in the number or the stride of their vertices. A
    ///     target that shares the stream through another mesh keeps it; this scene gets one
    ///     of its own then, as by `replaceSharedStreams`.
    /// Joints: moved as by `replaceJoints` to the blend of the world positions of the two
    ///     joints of an ID; "sacrum" is not turned, so that the next morph, which resets
    ///     it, finds the avatar as this one leaves it (where the parents of the two
    ///     stand alike). When a joint has no namesake in `target`, or that
    ///     operation finds another fault, it logs its message and the joints stay.
    /// Binding: blended vertices are bound to the skeleton as it then is, whether it has
    ///     moved or not: with W a joint's and N the node's world matrix, each inverse bind
    ///     matrix becomes the inverse of W, the bind shape matrix that of N. So
    ///     skinning gives the blended vertices back where the weights of a vertex sum
    ///     to 1. The streams of the skin that change are new ones.
    /// Errors: an empty `target` does nothing. Else the first of these that holds raises
    ///     "DisplayMessageAt", with ", 10, 10" behind it, and ends the operation; from the
    ///     second on the "sacrum" nodes have been reset.
    ///     "Invalid morph ratio. Morphing failed." (outside [0, 1] or NaN),
    ///     "Invalid morph targets. Missing avatar controller.",
    ///     "Invalid morph targets. Missing avatar skin.",
    ///     "Invalid morph targets. Missing avatar geometry." (or not a mesh).
    /// Events: those of the nodes that change; nothing for the vertices.
    /// `target` may be this scene. Of `target` only "sacrum" is changed, unless both share
    /// the mesh or the skin itself, or another mesh of it the vertex stream. The mesh's bounds
    /// are computed again when they are asked for. Throws `boost::bad_weak_ptr`, with nothing done,
    /// when no handle owns this scene. Linear in the vertices, joints and nodes of both.
    void morph(const boost::shared_ptr<SceneManager>& target, float ratio);

    /// Puts `stream` in the place of `current` wherever meshes (list of streams, vertices
    /// list, inputs of primitives) and skins (list of streams, inputs) of this scene hold
    /// it: those of the geometry library, of the instances in the node tree and of the
    /// controllers library. Animations are not looked at. Raises nothing. Does nothing when
    /// either is empty. Linear in the nodes, meshes and skins.
    void replaceSharedStreams(const StreamPtr& current, const StreamPtr& stream);

    /// Puts `geometry` in the place of the library's geometry `id`, as
    /// `GeometryManager::replaceGeometry` does, and lets everything in this scene use it
    /// that used the old one: geometry instances of nodes, those of controller instances,
    /// and the skins and morphs of both the controller instances and the library.
    ///
    /// The instances keep the materials of the symbols that the primitives of the new
    /// geometry use; other bindings go. A symbol that was not bound is put in with an empty
    /// handle, so that it can be bound later. Then raises "GeometryTopologyUpdate" with the
    /// ID and "SyncScene". An empty `geometry` or an unknown `id` does nothing. Linear in
    /// the nodes.
    void replaceGeometry(const std::string& id, const IGeometryPtr& geometry);

    /// @}

private:
    friend class SceneAttempt;

    void registerEventHandlers();
    void localNewEffectHandler(core::event::Event event);
    void localNewMaterialHandler(core::event::Event event);
    void localMaterialParameterUpdatedHandler(core::event::Event event);
    void localMaterialTechniqueChangedHandler(core::event::Event event);

    void raise(const core::event::EventType& type, const std::string& data);
    void shareEventManager();
    void addGeometryIDs(const GeometryManager& geometries);
    void placeNode(const NodePtr& node, const std::string& parentID, SceneAttempt& attempt);
    void replaceJoints(const boost::shared_ptr<SceneManager>& joints, bool turnsSacrum);

    // Released in reverse order.
    core::logger::Logger m_logger;
    NodePtr m_root;
    TreeRevisionPtr m_treeRevision;
    std::unique_ptr<NodeIndex> m_nodeIndex;
    mutable std::mutex m_geometryManagerMutex; ///< guards the following handle
    GeometryManagerPtr m_geometryManager;
    LayerManagerPtr m_layerManager;
    float m_meterUnit = 1.0F;
    UpAxis m_upAxis = Y_UP;
    std::vector<EvaluatorPtr> m_evaluators;
    Library<Image> m_images;
    Library<Effect> m_effects;
    Library<Material> m_materials;
    Library<Camera> m_cameras;
    Library<CameraInstance> m_cameraInstances;
    Library<Light> m_lights;
    Library<Controller> m_controllers;
    Library<Animation> m_animations;
    Library<PhysicsScene> m_physicsScenes;
    Library<PhysicsScene> m_instancedPhysicsScenes;
    Library<PhysicsMaterial> m_physicsMaterials;
    Library<PhysicsModel> m_physicsModels;
    ImagePtr m_surrounding;
    AnimationManagerPtr m_animationManager;
    std::string m_sceneName;
    std::string m_sceneID;
    std::unique_ptr<IdentifierRegister> m_identifiers;
    std::unique_ptr<SceneWorker> m_worker;
};
} // namespace velmoran::scene
