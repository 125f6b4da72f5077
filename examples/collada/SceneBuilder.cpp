#include "examples/collada/SceneBuilder.h"

#include "examples/collada/NodeExpansion.h"
#include "examples/collada/SkinBinder.h"
#include "scene/animation/AnimationManager.h"
#include "scene/deform/InstanceController.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Camera.h"
#include "scene/graph/CameraInstance.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/Light.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Material.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>

namespace velmoran::examples::collada
{
namespace
{
/// Builds the node tree and places cameras and lights in it.
///
/// Makes all nodes, then binds the skins to them, and then puts them into the tree: who hears of
/// a node finds it complete.
class TreeBuilder
{
public:
    TreeBuilder(Document& document, const Content& content, const scene::SceneManagerPtr& scene,
                const scene::MaterialPtr& fallback)
        : m_document(document),
          m_content(content),
          m_drafts(content.nodes.getDrafts()),
          m_scene(scene),
          m_fallback(fallback),
          m_isPlaced(m_drafts.size(), false)
    {
        for (const CameraDraft& draft : content.optics.getCameras())
        {
            m_cameras.push_back(makeCamera(draft, scene));
        }
        for (const LightDraft& draft : content.optics.getLights())
        {
            m_lights.push_back(makeLight(draft, scene));
        }
    }

    void build()
    {
        m_scene->setCameraLibrary(m_cameras);
        m_scene->setLightLibrary(m_lights);
        for (const NodeDraft& draft : m_drafts)
        {
            m_scene->addID(draft.id); // no generated ID may take it
        }
        const NodeDraft* const draft = m_content.nodes.getRoot();
        const scene::NodePtr root =
            draft ? makeNode(*draft, true) : boost::make_shared<scene::Node>(m_scene);
        m_scene->setRoot(root);
        if (draft)
        {
            markWritten(*draft);
            m_nodes.push_back({draft, root, true, 0, 0});
            makeNodes();
            addControllers();
            addNodes();
        }
    }

private:
    struct Frame
    {
        std::size_t place; ///< in the list of nodes
        bool isCopy;       ///< an `<instance_node>` is above
        std::size_t next;  ///< the child to make
    };

    /// Nodes that stand in the visual scene itself keep their IDs there, also when a
    /// copy of them comes first.
    void markWritten(const NodeDraft& root)
    {
        std::vector<const NodeDraft*> pending = {&root};
        while (!pending.empty())
        {
            const NodeDraft& draft = *pending.back();
            pending.pop_back();
            m_isPlaced[place(draft)] = true;
            for (const NodeDraft::Child& child : draft.children)
            {
                if (!child.isCopy)
                {
                    pending.push_back(&m_drafts[child.draft]);
                }
            }
        }
    }

    /// All nodes below the root, which is in the list.
    void makeNodes()
    {
        std::vector<Frame> path = {{0, false, 0}};
        while (!path.empty())
        {
            Frame& frame = path.back();
            const std::vector<NodeDraft::Child>& children = m_nodes[frame.place].draft->children;
            if (frame.next == children.size())
            {
                m_nodes[frame.place].end = m_nodes.size();
                path.pop_back();
                continue;
            }
            const NodeDraft::Child& child = children[frame.next++];
            const NodeDraft& draft = m_drafts[child.draft];
            const bool isCopy = frame.isCopy || child.isCopy;
            const bool keepsID = !isCopy || !m_isPlaced[child.draft];
            m_isPlaced[child.draft] = true;
            m_nodes.push_back({&draft, makeNode(draft, keepsID), keepsID, frame.place, 0});
            path.push_back({m_nodes.size() - 1, isCopy, 0});
        }
    }

    void addControllers()
    {
        SkinBinder binder(m_document, m_content, m_nodes, m_scene);
        for (std::size_t place = 0; place < m_nodes.size(); ++place)
        {
            for (const GeometryDraft& draft : m_nodes[place].draft->geometries)
            {
                if (draft.controller)
                {
                    const auto instance = boost::make_shared<scene::InstanceController>(
                        makeInstance(draft), binder.bind(place, draft));
                    instance->setSkeletons(binder.getSkeletonIDs(place, draft));
                    m_nodes[place].node->addInstanceController(instance);
                }
            }
        }
    }

    void addNodes()
    {
        for (std::size_t place = 1; place < m_nodes.size(); ++place)
        {
            m_nodes[m_nodes[place].parent].node->addNode(m_nodes[place].node);
        }
    }

    scene::NodePtr makeNode(const NodeDraft& draft, bool keepsID)
    {
        const auto node = boost::make_shared<scene::Node>(m_scene);
        setID(*node, draft, keepsID);
        node->setSID(draft.sid);
        node->setName(draft.name);
        node->setType(draft.type);
        for (const scene::ITransformationPtr& transformation : draft.transformations)
        {
            node->addTransformation(transformation->clone());
        }
        for (const std::string& layer : draft.layers)
        {
            node->addToLayer(layer);
        }
        for (const GeometryDraft& geometry : draft.geometries)
        {
            if (!geometry.controller)
            {
                node->addInstanceGeometry(makeInstance(geometry));
            }
        }
        for (const std::size_t light : draft.lights)
        {
            node->addInstanceLight(m_lights[light]);
        }
        for (const std::size_t camera : draft.cameras)
        {
            m_scene->addCameraInstance(boost::make_shared<scene::CameraInstance>(
                node, m_cameras[camera], m_scene->generateID()));
            node->addInstanceCamera(m_cameras[camera]);
        }
        return node;
    }

    void setID(scene::Node& node, const NodeDraft& draft, bool keepsID)
    {
        if (!draft.id.empty())
        {
            node.setID(keepsID ? draft.id : m_scene->generateID());
        }
        else if (m_document.hasID(node.getID()))
        {
            // The document uses for something else what the library made up.
            node.setID(m_scene->generateID());
        }
    }

    scene::InstanceGeometryPtr makeInstance(const GeometryDraft& draft) const
    {
        std::map<std::string, scene::MaterialPtr> bindings = draft.bindings;
        if (!draft.hasBindings)
        {
            for (const std::string& symbol : m_content.meshes.getSymbols(draft.mesh))
            {
                bindings.emplace(symbol, m_fallback);
            }
        }
        return boost::make_shared<scene::InstanceGeometry>(draft.mesh, std::move(bindings));
    }

    std::size_t place(const NodeDraft& draft) const
    {
        return static_cast<std::size_t>(&draft - m_drafts.data());
    }

    Document& m_document;
    const Content& m_content;
    const std::vector<NodeDraft>& m_drafts;
    const scene::SceneManagerPtr& m_scene;
    const scene::MaterialPtr m_fallback;
    std::vector<scene::CameraPtr> m_cameras;
    std::vector<scene::LightPtr> m_lights;
    std::vector<bool> m_isPlaced;    ///< by draft: its ID is taken
    std::vector<PlacedNode> m_nodes; ///< in pre-order, the root first
};

/// Puts `item` in front of `items` unless one of them has its ID; returns that or `item`.
template <typename Item, typename GetID>
Item putInFront(std::vector<Item>& items, const Item& item, GetID getID)
{
    const auto same = std::find_if(items.begin(), items.end(),
                                   [&](const Item& each) { return getID(*each) == getID(*item); });
    if (same != items.end())
    {
        return *same;
    }
    items.insert(items.begin(), item);
    return item;
}

/// Installs the document's effects and materials behind the defaults of a new scene.
/// Returns the material for instances that bind none.
scene::MaterialPtr installMaterials(const Materials& content, scene::SceneManager& scene)
{
    scene::EffectPtr effect = scene.getEffectByID("defaultEffect");
    if (!effect)
    {
        effect = boost::make_shared<scene::Effect>("defaultEffect", "default.cgfx", "");
    }
    scene::MaterialPtr material = scene.getMaterialWithID("defaultMaterial");
    if (!material)
    {
        material = boost::make_shared<scene::Material>("defaultMaterial", effect->getID());
    }
    std::vector<scene::EffectPtr> effects = content.getEffects();
    putInFront(effects, effect, [](const scene::Effect& each) { return each.getID(); });
    std::vector<scene::MaterialPtr> materials = content.getMaterials();
    material = putInFront(materials, material,
                          [](const scene::Material& each) { return each.getMaterialID(); });
    scene.setEffectLibrary(effects);
    scene.setMaterialList(materials);
    return material;
}
} // namespace

Content::Content(Document& document, const ReadOptions& options)
    : asset(readAsset(document)),
      sources(document),
      meshes(document, sources, options),
      materials(document),
      optics(document),
      controllers(document, sources, meshes),
      nodes(document, meshes, materials, optics, controllers),
      animations(document, sources),
      physicsMaterials(document),
      physicsModels(document, meshes, physicsMaterials),
      physicsScenes(document, physicsModels)
{
    checkExpansion(document, nodes, meshes);
}

void buildScene(Document& document, const Content& content, const scene::SceneManagerPtr& scene)
{
    // Goes after the nodes, controllers and physics models before, which hold its geometry:
    // only then does it find that nobody else does.
    const scene::GeometryManagerPtr replaced = scene->getGeometryManager();
    scene->setUpAxis(content.asset.upAxis);
    scene->setMeterUnit(content.asset.meter);
    scene->setImageLibrary(content.materials.getImages());
    const scene::MaterialPtr fallback = installMaterials(content.materials, *scene);
    scene->setGeometryManager(content.meshes.getManager());
    scene->setControllersLibrary(content.controllers.getControllers());
    TreeBuilder(document, content, scene, fallback).build();
    scene->setPhysicsMaterialLibrary(content.physicsMaterials.getMaterials());
    scene->setPhysicsModelLibrary(content.physicsModels.getModels());
    content.physicsScenes.install(document, *scene);
    // Last, since the worker drives the animations from here on.
    if (content.animations.getAnimations().empty())
    {
        scene->removeAllAnimations();
        if (const scene::AnimationManagerPtr manager = scene->getAnimationManager())
        {
            manager->setAnimation({});
        }
    }
    else
    {
        scene->setAnimationsLibrary(content.animations.getAnimations());
    }
}
} // namespace velmoran::examples::collada
