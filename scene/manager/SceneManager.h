#pragma once

#include "core/event/EventBase.h"
#include "core/logger/Logger.h"
#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/graph/ISceneContext.h"
#include "scene/manager/Library.h"
#include "scene/manager/UpAxis.h"

#include <boost/enable_shared_from_this.hpp>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace velmoran::scene
{
class NodeIndex;
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
///     reported a change. Exceptions out of `update` are not caught.
/// Libraries: lists in insertion order; look-ups are linear and the first match
///     wins; unknown identifiers and indices out of range give empty handles. Empty
///     handles are left out wherever something is added or installed.
/// Identifiers: every identifier that begins with "OID" and comes into a library or to
///     a node of this scene is recorded, so that `generateID` never gives it out.
/// Events handled, by which other parts of the application edit materials. The first
///     field is not read; an event with too few fields is ignored. Handlers run on the
///     thread that raises the event, which holds the scene lock where others may read.
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
/// | "L_MaterialTechniqueChanged" | -, material's ID, technique     | sets the technique     |
///
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

    // Life and worker thread

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
    void unlockScene();

    /// Adds a controller to those that the worker drives: behind all others if it
    /// only reads, else in front of them. Then calls its `attach`, with no lock
    /// held, if this scene is owned by a handle. May be called while holding the
    /// scene lock and from a controller's `update` (it runs from the next turn on).
    void addSceneController(const ISceneControllerPtr& controller);

    /// Takes out the first entry of this controller. Once it has returned,
    /// the controller is not updated any more; from `update`, after this turn.
    void removeSceneController(const ISceneControllerPtr& controller);

    /// Replaces the worker's time source; the time of the last update stays.
    void setClock(const core::system::IClockPtr& clock);
    core::system::IClockPtr getClock() const;

    void addEvaluator(const EvaluatorPtr& evaluator);
    void removeEvaluator(const EvaluatorPtr& evaluator);
    unsigned int getEvaluatorsCount() const;
    EvaluatorPtr getEvaluatorAt(unsigned int index) const;

    // Parts of the scene

    GeometryManagerPtr getGeometryManager() const;

    /// Installs another geometry library, gives it this scene's event manager and
    /// records its identifiers. The one before keeps its event manager. An empty handle
    /// is ignored.
    void setGeometryManager(const GeometryManagerPtr& geometryManager);
    LayerManagerPtr getLayerManager() override;

    /// The manager that the last `setAnimationsLibrary` made; empty before.
    AnimationManagerPtr getAnimationManager() const;
    TreeRevisionPtr getTreeRevision() const override;

    // Identifiers and settings

    /// "OID" and the next number whose identifier is not in use. The result is not
    /// recorded: a caller that wants it reserved calls `addID`.
    std::string generateID();

    /// Records an identifier that begins with "OID"; ignores any other.
    void addID(std::string id) override;

    void setSceneID(const std::string& id);
    const std::string& getSceneID() const;
    void setSceneName(const std::string& name);
    const std::string& getSceneName() const;

    /// Metres in one scene unit. Negative values and NaN are ignored.
    void setMeterUnit(float meters);
    float getMeterUnit() const;
    void setUpAxis(UpAxis axis);
    UpAxis getUpAxis() const;

    // Node tree

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
    NodePtr getNodeByName(const std::string& name, const NodePtr& from) const;

    /// All nodes of the tree in pre-order, each once. Linear.
    std::vector<NodePtr> getNodeArray() const;

    /// The same below `from`, which is included.
    std::vector<NodePtr> getNodeArray(const NodePtr& from) const;

    /// Removes a node from its parent and raises "SceneUpdate". A node without
    /// parent is left alone.
    void removeNode(const NodePtr& node);

    /// Removes the first node whose *name* is `name`; callers pass names here.
    void removeNodeByID(const std::string& name);

    // Images

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

    // Effects

    void setEffectLibrary(const std::vector<EffectPtr>& effects);
    void addEffect(const EffectPtr& effect);
    std::vector<EffectPtr> getEffectLibrary() const;
    EffectPtr getEffectByID(const std::string& id) const;
    EffectPtr getEffectByFilename(const std::string& fileName) const;

    /// Removes every material that uses the effect, then the effect. Raises nothing.
    void removeEffect(const EffectPtr& effect);

    /// "EffectLibrary: (effectID, filename)", then a line "ID, file name" per effect.
    std::string effectLibraryToString() const;

    // Materials

    /// Installs the list and raises "SceneUpdate" ("MaterialList").
    void setMaterialList(const std::vector<MaterialPtr>& materials);

    /// Appends and raises "SceneUpdate" ("MaterialList"); does not look for clashes.
    void addMaterial(const MaterialPtr& material);
    std::vector<MaterialPtr> getMaterialList() const;
    MaterialPtr getMaterialWithID(const std::string& id) const;

    /// `Material::toString` of every material, each followed by a line end.
    std::string materialLibraryToString() const;

    // Cameras

    void setCameraLibrary(const std::vector<CameraPtr>& cameras);
    CameraPtr getCameraByID(const std::string& id) const;
    unsigned int getCameraCount() const;
    CameraPtr getCameraAt(unsigned int index) const;

    /// Appends `instance` and logs it.
    void addCameraInstance(const CameraInstancePtr& instance);
    CameraInstancePtr getCameraInstanceBySID(const std::string& sid) const;
    unsigned int getCameraInstanceCount() const;
    CameraInstancePtr getCameraInstanceAt(unsigned int index) const;

    /// Makes a camera of `type` (`Camera::Type`) with a generated ID and the name
    /// "VMCamera" and places it at the node `nodeID`, which is made when there is
    /// none: below the node `parentID`, or below the root when that is unknown, with
    /// the ID `nodeID` or a generated one when that is empty. The node, new or not, is
    /// turned once so that the camera suits the scene's up axis. Raises
    /// "SceneNewCamera" with the SID of the camera's instance and returns the
    /// camera's ID. Throws `boost::bad_weak_ptr`, with nothing done, when no handle
    /// owns this scene.
    std::string createNewCamera(int type, const std::string& nodeID, const std::string& parentID);

    // Lights

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

    // Controllers (skins and morphs)

    void setControllersLibrary(const std::vector<ControllerPtr>& controllers);
    void addController(const ControllerPtr& controller);
    std::vector<ControllerPtr> getControllersLibrary() const;
    ControllerPtr getControllerById(const std::string& id) const;

    // Animations

    /// Installs the list, makes a new animation manager and lets the worker drive it
    /// in place of the one before.
    void setAnimationsLibrary(const std::vector<AnimationPtr>& animations);
    void addAnimation(const AnimationPtr& animation);
    std::vector<AnimationPtr> getAnimationsLibrary() const;
    void removeAnimation(unsigned int index);
    void removeAllAnimations();

    // Physics description

    void setPhysicsSceneLibrary(const std::vector<PhysicsScenePtr>& scenes);
    std::vector<PhysicsScenePtr> getPhysicsSceneLibrary() const;
    PhysicsScenePtr getPhysicsSceneById(const std::string& id) const;
    void setInstancedPhysicsScenes(const std::vector<PhysicsScenePtr>& scenes);
    std::vector<PhysicsScenePtr> getInstancedPhysicsScenes() const;
    void setPhysicsMaterialLibrary(const std::vector<PhysicsMaterialPtr>& materials);
    std::vector<PhysicsMaterialPtr> getPhysicsMaterialLibrary() const;
    PhysicsMaterialPtr getPhysicsMaterialById(const std::string& id) const;
    void setPhysicsModelLibrary(const std::vector<PhysicsModelPtr>& models);
    std::vector<PhysicsModelPtr> getPhysicsModelLibrary() const;
    PhysicsModelPtr getPhysicsModelById(const std::string& id) const;

    // Merging. Runs on the calling thread, takes no lock and leaves the incoming
    // scene as it was; callers hold the scene lock where others may read. Every clash
    // is resolved and logged. Incoming images, effects and materials clash with what
    // this scene holds, not with each other; nodes do, since each is added as it is
    // met. Results map old identifiers to new ones, for renamed items only.

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

private:
    void registerEventHandlers();
    void localNewEffectHandler(core::event::Event event);
    void localNewMaterialHandler(core::event::Event event);
    void localMaterialParameterUpdatedHandler(core::event::Event event);
    void localMaterialTechniqueChangedHandler(core::event::Event event);

    void raise(const core::event::EventType& type, const std::string& data);
    void shareEventManager();
    void addGeometryIDs();
    void placeNode(const NodePtr& node, const std::string& parentID);

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
    std::uint32_t m_idCounter = 0;
    std::set<std::string> m_usedIDs;
    std::unique_ptr<SceneWorker> m_worker;
};
} // namespace velmoran::scene
