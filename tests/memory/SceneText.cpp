#include "tests/memory/SceneText.h"

#include "core/utils/Matrix.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Camera.h"
#include "scene/graph/CameraInstance.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Light.h"
#include "scene/graph/Node.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"
#include "scene/physics/PhysicsMaterial.h"
#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsScene.h"

#include <map>
#include <regex>
#include <sstream>

namespace velmoran::scene
{
namespace
{
class SceneText
{
public:
    explicit SceneText(Objects objects) : m_objects(objects) {}

    void addAll(SceneManager& scene)
    {
        add("scene", scene.getSceneID(), scene.getSceneName(), scene.getMeterUnit(),
            scene.getUpAxis(), nameOf(scene.getSurrounding()));
        for (const NodePtr& node : scene.getNodeArray())
        {
            addNode(*node);
        }
        addGeometries(*scene.getGeometryManager());
        addLayers(*scene.getLayerManager());
        addLibraries(scene);
        addAnimations(scene);
    }

    std::string take() const { return m_text.str(); }

private:
    template <typename Handle>
    std::string nameOf(const Handle& handle)
    {
        std::ostringstream name;
        const void* const address = handle.get();
        if (m_objects == Objects::BY_ADDRESS || address == nullptr)
        {
            name << address;
        }
        else
        {
            name << "#" << m_numbers.try_emplace(address, m_numbers.size()).first->second;
        }
        return name.str();
    }

    template <typename... Values>
    void add(const char* kind, const Values&... values)
    {
        m_text << kind;
        (void)std::initializer_list<int>{(m_text << " | " << values, 0)...};
        m_text << "\n";
    }

    template <typename List>
    std::string join(const List& list)
    {
        std::ostringstream text;
        for (const auto& entry : list)
        {
            text << entry << ' ';
        }
        return text.str();
    }

    template <typename List>
    std::string joinNames(const List& list)
    {
        std::vector<std::string> names;
        for (const auto& entry : list)
        {
            names.push_back(nameOf(entry));
        }
        return join(names);
    }

    void addNode(const Node& node)
    {
        add("node", nameOf(&node, 0), node.getID(), node.getSID(), node.getName(), node.getType(),
            nameOf(node.getParent()), node.isListedTwice(), node.getChildCount(),
            join(node.getLayers()));
        add(" transform", node.getTransformations().reshaped().transpose(),
            node.getRotation().matrix().reshaped().transpose(), node.getScale().transpose(),
            node.getTranslation().vector().transpose());
        for (const ITransformationPtr& transformation : node.getOriginalTransformations())
        {
            add(" listed", nameOf(transformation), transformation->getType(),
                transformation->getSid());
        }
        for (unsigned int i = 0; i < node.getInstanceCameraCount(); ++i)
        {
            add(" camera", nameOf(node.getInstanceCamera(i)));
        }
        for (unsigned int i = 0; i < node.getInstanceLightCount(); ++i)
        {
            add(" light", nameOf(node.getInstanceLight(i)));
        }
        for (const InstanceGeometryPtr& instance : node.getAllInstancedGeometries())
        {
            add(" instance", nameOf(instance), nameOf(instance->getGeometry()),
                joinNames(instance->getMaterialList()));
            for (const auto& [symbol, material] : instance->getMaterialMap())
            {
                add("  binding", symbol, nameOf(material));
            }
        }
    }

    std::string nameOf(const Node* node, int) { return nameOf(node->weak_from_this().lock()); }

    void addStream(const StreamPtr& stream)
    {
        if (!stream)
        {
            return;
        }
        add("  stream", nameOf(stream), stream->getID(), stream->getStride(), stream->getCount(),
            stream->getAllowDuplicates(), join(stream->getNameList()), join(stream->getData()));
        for (const auto& [name, type] : stream->getParamList())
        {
            add("   parameter", name, type);
        }
    }

    void addInputs(const std::vector<StreamMapping>& inputs)
    {
        for (const StreamMapping& input : inputs)
        {
            add("  input", input.getSemantic(), nameOf(input.getStream()), input.getOffset());
            addStream(input.getStream());
        }
    }

    void addGeometries(const GeometryManager& geometries)
    {
        for (const std::string& id : geometries.getIDs())
        {
            const IGeometryPtr geometry = geometries.getGeometry(id);
            add("geometry", id, nameOf(geometry), geometry->getID());
            auto* const mesh = dynamic_cast<Mesh*>(geometry.get());
            if (mesh != nullptr)
            {
                addMesh(*mesh);
            }
        }
    }

    void addMesh(Mesh& mesh)
    {
        add(" bounds", mesh.getBVMin().transpose(), mesh.getBVMax().transpose());
        for (const StreamPtr& stream : mesh.getStreams())
        {
            addStream(stream);
        }
        addInputs(mesh.getVertices());
        for (const IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
        {
            add(" primitive", nameOf(primitive), primitive->getType(),
                primitive->getMaterialSymbol(), join(primitive->getBVMin()),
                join(primitive->getBVMax()), join(primitive->getIndexStream()));
            addInputs(primitive->getStreamMapping());
        }
    }

    void addLayers(const LayerManager& layers)
    {
        for (int i = 0; !layers.getLayerName(i).empty(); ++i)
        {
            add("layer", i, layers.getLayerName(i));
        }
    }

    void addMaterials(const SceneManager& scene)
    {
        for (const ImagePtr& image : scene.getImageLibrary())
        {
            add("image", nameOf(image), image->getID(), image->getFilename(), image->getName());
        }
        for (const EffectPtr& effect : scene.getEffectLibrary())
        {
            add("effect", nameOf(effect), effect->getID(), effect->getFilename());
        }
        for (const MaterialPtr& material : scene.getMaterialList())
        {
            add("material", nameOf(material), material->toString(), material->getTechnique(),
                joinNames(material->getMaterialParameters()));
        }
    }

    void addLibraries(const SceneManager& scene)
    {
        addMaterials(scene);
        for (unsigned int i = 0; i < scene.getCameraCount(); ++i)
        {
            add("camera", nameOf(scene.getCameraAt(i)), scene.getCameraAt(i)->getID());
        }
        for (unsigned int i = 0; i < scene.getCameraInstanceCount(); ++i)
        {
            const CameraInstancePtr instance = scene.getCameraInstanceAt(i);
            add("camera instance", nameOf(instance), instance->getSID(),
                nameOf(instance->getCamera()), nameOf(instance->getParentNode()));
        }
        for (const LightPtr& light : scene.getLightLibrary())
        {
            add("light", nameOf(light), light->getID());
        }
        for (const ControllerPtr& controller : scene.getControllersLibrary())
        {
            add("controller", nameOf(controller), controller->getID());
            addSkin(controller->getSkin());
        }
        add("physics", joinNames(scene.getPhysicsSceneLibrary()),
            joinNames(scene.getInstancedPhysicsScenes()),
            joinNames(scene.getPhysicsMaterialLibrary()), joinNames(scene.getPhysicsModelLibrary()),
            scene.getEvaluatorsCount());
    }

    void addSkin(const SkinPtr& skin)
    {
        if (!skin)
        {
            return;
        }
        add(" skin", nameOf(skin), nameOf(skin->getSourceGeometry()), join(skin->getVCount()),
            join(skin->getV()), skin->getBindShapeMatrix().reshaped().transpose());
        add(" inputs", nameOf(skin->getJointsInput("JOINT")),
            nameOf(skin->getJointsInput("INV_BIND_MATRIX")),
            nameOf(skin->getVertexWeightsInput("JOINT")),
            nameOf(skin->getVertexWeightsInput("WEIGHT")));
        for (const StreamPtr& stream : skin->getStreams())
        {
            addStream(stream);
        }
    }

    void addAnimation(const Animation& animation)
    {
        add("animation", animation.getID(), animation.getName(), joinNames(animation.getStreams()),
            joinNames(animation.getSamplers()));
        for (const auto& [sampler, target] : animation.getChannelArray())
        {
            add(" channel", nameOf(sampler), target, join(sampler->getInputsSemantics()));
            for (int i = 0; i < Sampler::UNKNOWN; ++i)
            {
                addStream(sampler->getStreamBySemantic(static_cast<Sampler::Semantic>(i)));
            }
        }
        for (const AnimationPtr& child : animation.getChildAnimations())
        {
            addAnimation(*child);
        }
    }

    void addAnimations(const SceneManager& scene)
    {
        for (const AnimationPtr& animation : scene.getAnimationsLibrary())
        {
            addAnimation(*animation);
        }
        const AnimationManagerPtr player = scene.getAnimationManager();
        add("player", nameOf(player));
        if (player)
        {
            add(" state", nameOf(player->getAnimation()), player->paused(),
                player->getCurrentTime().total_microseconds(),
                player->getLoopDuration().total_microseconds(), join(player->getFrameTimes()));
            for (const NodePtr& node : scene.getNodeArray())
            {
                add(" targets", player->isNodeTargeted(node),
                    join(player->getTargetedTransformationsForNode(node)));
            }
        }
    }

    Objects m_objects;
    std::map<const void*, std::size_t> m_numbers;
    std::ostringstream m_text;
};
} // namespace

std::string toText(SceneManager& scene, Objects objects)
{
    SceneText text(objects);
    text.addAll(scene);
    // Identifiers that nodes make for themselves are counted in the whole process.
    return objects == Objects::BY_ADDRESS
               ? text.take()
               : std::regex_replace(text.take(), std::regex("Node\\d+"), "NodeN");
}
} // namespace velmoran::scene
