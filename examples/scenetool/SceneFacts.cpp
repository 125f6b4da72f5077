#include "examples/scenetool/SceneFacts.h"

#include "examples/scenetool/AnimationFacts.h"
#include "examples/scenetool/Channels.h"
#include "examples/scenetool/GeometryFacts.h"
#include "examples/scenetool/PhysicsFacts.h"
#include "examples/scenetool/Text.h"
#include "scene/animation/Animation.h"
#include "scene/deform/Controller.h"
#include "scene/deform/Morph.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Camera.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/Light.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>

namespace velmoran::examples
{
namespace
{
using scene::IGeometryPtr;
using scene::NodePtr;
using scene::SceneManagerPtr;
using scene::StreamPtr;

/// The nodes below the root, without it.
std::vector<NodePtr> nodesOf(const SceneManagerPtr& scene)
{
    std::vector<NodePtr> nodes = scene->getNodeArray();
    nodes.erase(nodes.begin());
    return nodes;
}

template <typename List, typename Getter>
Json listIDs(const List& items, Getter getID)
{
    Json ids = Json::array();
    for (const auto& item : items)
    {
        ids.push_back(((*item).*getID)());
    }
    return ids;
}

std::vector<scene::CameraPtr> camerasOf(const SceneManagerPtr& scene)
{
    std::vector<scene::CameraPtr> cameras;
    for (unsigned int i = 0; i < scene->getCameraCount(); ++i)
    {
        cameras.push_back(scene->getCameraAt(i));
    }
    return cameras;
}

Json collectIDs(const SceneManagerPtr& scene)
{
    Json ids;
    ids["cameras"] = listIDs(camerasOf(scene), &scene::Camera::getID);
    ids["lights"] = listIDs(scene->getLightLibrary(), &scene::Light::getID);
    ids["images"] = listIDs(scene->getImageLibrary(), &scene::Image::getID);
    ids["effects"] = listIDs(ownEffects(scene), &scene::Effect::getID);
    ids["materials"] = listIDs(ownMaterials(scene), &scene::Material::getMaterialID);
    ids["animations"] = listIDs(scene->getAnimationsLibrary(), &scene::Animation::getID);
    return ids;
}

void countLibraries(const SceneManagerPtr& scene, Json& counts)
{
    const auto controllers = scene->getControllersLibrary();
    const auto animations = getAllAnimations(scene->getAnimationsLibrary());
    std::size_t channels = 0;
    std::size_t samplers = 0;
    for (const auto& animation : animations)
    {
        channels += animation->getChannelArray().size();
        samplers += animation->getSamplers().size();
    }
    counts["geometries"] = scene->getGeometryManager()->getCount();
    counts["controllers"] = controllers.size();
    counts["skins"] =
        std::count_if(controllers.begin(), controllers.end(),
                      [](const auto& item) { return static_cast<bool>(item->getSkin()); });
    counts["morphs"] =
        std::count_if(controllers.begin(), controllers.end(),
                      [](const auto& item) { return static_cast<bool>(item->getMorph()); });
    counts["animations_top_level"] = scene->getAnimationsLibrary().size();
    counts["animations_all"] = animations.size();
    counts["channels"] = channels;
    counts["samplers"] = samplers;
    counts["cameras"] = scene->getCameraCount();
    counts["lights"] = scene->getLightLibrary().size();
    counts["images"] = scene->getImageCount();
    counts["effects"] = ownEffects(scene).size();
    counts["materials"] = ownMaterials(scene).size();
}

void countNodes(const SceneManagerPtr& scene, Json& counts)
{
    std::size_t joints = 0;
    std::size_t geometries = 0;
    std::size_t controllers = 0;
    std::size_t cameras = 0;
    std::size_t lights = 0;
    std::map<std::string, std::size_t> transformations;
    const std::vector<NodePtr> nodes = nodesOf(scene);
    for (const NodePtr& node : nodes)
    {
        joints += node->getType() == "JOINT" ? 1U : 0U;
        geometries += node->getInstanceGeometryCount();
        controllers += node->getInstanceControllerCount();
        cameras += node->getInstanceCameraCount();
        lights += node->getInstanceLightCount();
        for (const auto& transformation : node->getOriginalTransformations())
        {
            ++transformations[transformationName(transformation->getType())];
        }
    }
    counts["root_nodes_in_visual_scene"] = scene->getRoot()->getChildCount();
    counts["nodes_expanded"] = nodes.size();
    counts["joint_nodes_expanded"] = joints;
    counts["instance_geometry_expanded"] = geometries;
    counts["instance_controller_expanded"] = controllers;
    counts["instance_camera_expanded"] = cameras;
    counts["instance_light_expanded"] = lights;
    counts["transformations_expanded"] = transformations;
}

Json collectController(const scene::ControllerPtr& controller)
{
    Json facts;
    facts["id"] = controller->getID();
    facts["name"] = textOrNull(controller->getName());
    const scene::SkinPtr skin = controller->getSkin();
    facts["type"] = skin ? Json("skin") : controller->getMorph() ? Json("morph") : Json(nullptr);
    const IGeometryPtr source = controller->getSourceGeometry();
    facts["source"] = source ? Json(source->getID()) : Json(nullptr);
    if (skin)
    {
        const StreamPtr joints = skin->getJointsInput("JOINT");
        facts["joints"] = joints ? joints->getNameList() : std::vector<std::string>();
        facts["joint_count"] = facts["joints"].size();
        facts["vcount_length"] = skin->getVCount().size();
        facts["v_length"] = skin->getV().size();
    }
    return facts;
}

Json collectNode(const NodePtr& node, const NodePtr& root)
{
    Json transformations = Json::array();
    for (const auto& transformation : node->getOriginalTransformations())
    {
        transformations.push_back(transformationName(transformation->getType()));
    }
    const NodePtr parent = node->getParent();
    return {{"id", node->getID()},
            {"name", textOrNull(node->getName())},
            {"sid", textOrNull(node->getSID())},
            {"type", textOrNull(node->getType())},
            {"parent", parent && parent != root ? Json(parent->getID()) : Json(nullptr)},
            {"transformations", std::move(transformations)}};
}

void collectNodes(const SceneManagerPtr& scene, Json& facts)
{
    const NodePtr root = scene->getRoot();
    const std::vector<NodePtr> nodes = root->getNodesBelow();
    const std::vector<Eigen::Matrix4f> worlds = root->getCombinedTransformationsBelow();
    Json tree = Json::array();
    Json matrices = Json::array();
    for (std::size_t i = 1; i < nodes.size(); ++i)
    {
        tree.push_back(collectNode(nodes[i], root));
        matrices.push_back({{"node", nodes[i]->getID()}, {"world", matrixRows(worlds[i])}});
    }
    facts["node_tree"] = std::move(tree);
    facts["rest_world_matrices"] = std::move(matrices);
}
} // namespace

Json collectFacts(const SceneManagerPtr& scene, const std::string& fileName)
{
    Json facts;
    facts["file"] = std::filesystem::path(fileName).filename().string();
    facts["up_axis"] = upAxisText(scene);
    facts["unit_meter"] = floatText(scene->getMeterUnit());
    countLibraries(scene, facts["counts"]);
    countNodes(scene, facts["counts"]);
    countPhysics(scene, facts["counts"]);
    facts["ids"] = collectIDs(scene);
    collectPhysicsIDs(scene, facts["ids"]);
    facts["visual_scene"] = scene->getRoot()->getID();
    facts["geometries"] = collectGeometries(scene);
    facts["totals"] = collectTotals(facts["geometries"]);
    facts["controllers"] = Json::array();
    for (const auto& controller : scene->getControllersLibrary())
    {
        facts["controllers"].push_back(collectController(controller));
    }
    collectNodes(scene, facts);
    collectAnimation(scene, facts);
    return facts;
}

std::vector<scene::EffectPtr> ownEffects(const SceneManagerPtr& scene)
{
    std::vector<scene::EffectPtr> effects = scene->getEffectLibrary();
    if (!effects.empty() && effects.front()->getID() == "defaultEffect" &&
        effects.front()->getFilename() == "default.cgfx")
    {
        effects.erase(effects.begin());
    }
    return effects;
}

std::vector<scene::MaterialPtr> ownMaterials(const SceneManagerPtr& scene)
{
    std::vector<scene::MaterialPtr> materials = scene->getMaterialList();
    if (!materials.empty() && materials.front()->getMaterialID() == "defaultMaterial" &&
        materials.front()->getEffectID() == "defaultEffect")
    {
        materials.erase(materials.begin());
    }
    return materials;
}

Json textOrNull(const std::string& text)
{
    return text.empty() ? Json(nullptr) : Json(text);
}

std::string upAxisText(const SceneManagerPtr& scene)
{
    switch (scene->getUpAxis())
    {
    case scene::X_UP:
        return "X_UP";
    case scene::Y_UP:
        return "Y_UP";
    case scene::Z_UP:
        return "Z_UP";
    }
    return "";
}

const char* transformationName(int type)
{
    static constexpr std::array<const char*, 6> NAMES = {"lookat", "matrix", "rotate",
                                                         "scale",  "skew",   "translate"};
    return NAMES.at(static_cast<std::size_t>(type));
}

std::size_t tupleCount(const StreamPtr& stream)
{
    const int stride = stream->getStride();
    return stride > 0 ? stream->getData().size() / static_cast<std::size_t>(stride) : 0;
}

Json matrixRows(const Eigen::Matrix4f& matrix)
{
    Json rows = Json::array();
    for (int row = 0; row < 4; ++row)
    {
        rows.push_back({matrix(row, 0), matrix(row, 1), matrix(row, 2), matrix(row, 3)});
    }
    return rows;
}
} // namespace velmoran::examples
