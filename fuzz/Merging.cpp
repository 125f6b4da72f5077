// Random scenes with clashing identifiers are merged: nothing is lost, nothing refers to the
// other scene, counts add up.

#include "core/event/EventManager.h"
#include "fuzz/MergedTree.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/graph/TransformationRotate.h"
#include "scene/graph/TransformationTranslate.h"

#include <boost/make_shared.hpp>

using namespace velmoran;
using namespace velmoran::scene;
using fuzz::check;
using fuzz::Input;

namespace
{
/// An identifier that may clash, also with what a merge makes of others.
std::string takeID(Input& input, const char* prefix)
{
    const std::string id = input.name(prefix, 4);
    return input.below(8) == 0 ? id + "__renamed__" : id;
}

MeshPtr takeMesh(Input& input)
{
    const auto mesh = boost::make_shared<Mesh>(takeID(input, "g"), "");
    for (unsigned int i = input.below(3); i > 0; --i)
    {
        const auto primitive =
            boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>());
        primitive->setMaterialSymbol(input.name("symbol", 3));
        mesh->addPrimitive(primitive);
    }
    return mesh;
}

MaterialPtr takeMaterial(Input& input, const SceneManager& scene)
{
    const std::string id = takeID(input, "m");
    const auto material =
        boost::make_shared<Material>(id, input.entryOf(scene.getEffectLibrary())->getID());
    material->setTechnique(input.name("technique", 2));
    const std::vector<ImagePtr> images = scene.getImageLibrary();
    for (unsigned int i = images.empty() ? 0 : input.below(3); i > 0; --i)
    {
        const char* const type = input.below(4) == 0 ? "string" : "texture";
        material->addMaterialParameter(boost::make_shared<MaterialParameter>(
            "parameter", type, input.entryOf(images)->getID()));
    }
    return material;
}

void fillLibraries(Input& input, const SceneManagerPtr& scene)
{
    for (unsigned int i = input.below(4); i > 0; --i)
    {
        const std::string image = takeID(input, "i");
        scene->addImage(boost::make_shared<Image>(image, input.name("f", 3), "image"));
        const std::string effect = takeID(input, "e");
        scene->addEffect(boost::make_shared<Effect>(effect, input.name("f", 3), "effect"));
        const MeshPtr mesh = takeMesh(input);
        if (!scene->getGeometryManager()->addGeometry(mesh))
        {
            mesh->clearPrimitives();
        }
    }
    for (unsigned int i = input.below(4); i > 0; --i)
    {
        scene->addMaterial(takeMaterial(input, *scene));
        scene->getLayerManager()->addLayer(takeID(input, "l"));
    }
}

InstanceGeometryPtr takeInstance(Input& input, const SceneManager& scene)
{
    std::vector<IGeometryPtr> geometries;
    scene.getGeometryManager()->getGeometries(geometries);
    const IGeometryPtr geometry = input.entryOf(geometries);
    InstanceGeometry::MaterialMap bindings;
    for (unsigned int i = input.below(4); i > 0; --i)
    {
        MaterialPtr& material = bindings[input.name("symbol", 3)];
        material = input.below(4) == 0 ? MaterialPtr() : input.entryOf(scene.getMaterialList());
    }
    return boost::make_shared<InstanceGeometry>(geometry, bindings);
}

ITransformationPtr takeTransformation(Input& input)
{
    const float x = input.plainNumber();
    const float y = input.plainNumber();
    ITransformationPtr result;
    if (input.flag())
    {
        result = boost::make_shared<TransformationTranslate>(ITransformation::Vector3(x, y, 0));
    }
    else
    {
        result = boost::make_shared<TransformationRotate>(ITransformation::Vector3(0, 0, 1), x);
    }
    result->setSid(input.name("s", 3));
    return result;
}

NodePtr takeNode(Input& input, const SceneManagerPtr& scene)
{
    const auto node = boost::make_shared<Node>(scene);
    if (input.below(4) != 0)
    {
        node->setID(input.name("n", 10));
    }
    node->setName(input.name("name", 4));
    for (unsigned int i = input.below(3); i > 0; --i)
    {
        node->addTransformation(takeTransformation(input));
    }
    for (unsigned int i = input.below(3); i > 0; --i)
    {
        node->addToLayer(input.entryOf(fuzz::layersOf(*scene)));
    }
    if (scene->getGeometryManager()->getCount() > 0 && input.flag())
    {
        node->addInstanceGeometry(takeInstance(input, *scene));
    }
    return node;
}

SceneManagerPtr takeScene(Input& input)
{
    const auto scene = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    fillLibraries(input, scene);
    std::vector<NodePtr> nodes = {scene->getRoot()};
    if (input.flag())
    {
        scene->getRoot()->setID(input.name("n", 10));
    }
    for (unsigned int i = input.below(12); i > 0; --i)
    {
        const NodePtr node = takeNode(input, scene);
        input.entryOf(nodes)->addNode(node);
        nodes.push_back(node);
    }
    return scene;
}

/// All that can be told of a scene, to see that it stays as it is.
auto contentsOf(SceneManager& scene)
{
    std::vector<std::string> images;
    for (const ImagePtr& image : scene.getImageLibrary())
    {
        images.push_back(image->getID() + ' ' + image->getFilename());
    }
    std::vector<decltype(fuzz::stateOf(std::declval<const Node&>()))> states;
    for (const NodePtr& node : scene.getNodeArray())
    {
        states.push_back(fuzz::stateOf(*node));
    }
    const fuzz::Libraries libraries(scene);
    return std::make_tuple(images, libraries.images, libraries.effects, libraries.materials,
                           libraries.geometries, scene.effectLibraryToString(),
                           scene.materialLibraryToString(), fuzz::layersOf(scene),
                           scene.getNodeArray(), states);
}

bool hasUniqueIDs(const SceneManager& scene)
{
    std::set<std::string> ids;
    const std::vector<NodePtr> nodes = scene.getNodeArray();
    for (const NodePtr& node : nodes)
    {
        ids.insert(node->getID());
    }
    return ids.size() == nodes.size();
}

/// Clones keep the symbols of what they are clones of.
void compareSymbols(const fuzz::Libraries& ours, const fuzz::Libraries& theirs,
                    const fuzz::Libraries& merged, const fuzz::Renames& renames)
{
    for (const auto& [old, id] : renames)
    {
        const auto isShared = theirs.geometries.count(id) != 0;
        if (isShared || ours.geometries.count(id) != 0)
        {
            continue; // the clone gave way
        }
        const auto source = boost::dynamic_pointer_cast<Mesh>(theirs.geometries.at(old));
        const auto clone = boost::dynamic_pointer_cast<Mesh>(merged.geometries.at(id));
        check(source->getPrimitiveCount() == clone->getPrimitiveCount(), "number of primitives");
        for (unsigned int i = 0; i < source->getPrimitiveCount(); ++i)
        {
            check(clone->getPrimitive(i)->getMaterialSymbol() ==
                      source->getPrimitive(i)->getMaterialSymbol(),
                  "symbols of clones");
        }
    }
}

void mergeAndCompare(Input& input, const SceneManagerPtr& scene, const SceneManagerPtr& other)
{
    const int flags = static_cast<int>(input.below(64));
    const std::string parent = input.name("n", 10);
    const bool wasUnique = hasUniqueIDs(*scene);
    const auto contents = contentsOf(*other);
    const fuzz::Libraries ours(*scene);
    const fuzz::Libraries theirs(*other);
    const std::vector<std::string> layers = fuzz::layersOf(*scene);
    fuzz::MergedTree tree(scene->getRoot());
    tree.merge(parent, other->getRoot(), flags);

    scene->mergeSceneManager(other, flags, parent);

    const fuzz::Libraries merged(*scene);
    const fuzz::MergedLibraries libraries(ours, theirs, merged, flags);
    compareSymbols(ours, theirs, merged, libraries.geometries);
    const fuzz::Renames layerNames =
        fuzz::compareLayers(layers, fuzz::layersOf(*other), fuzz::layersOf(*scene),
                            (flags & SceneManager::DISCARD_REPEATED_LAYERS) != 0);
    tree.compare(scene, libraries, layerNames);
    check(!wasUnique || hasUniqueIDs(*scene), "identifiers stay unique");
    check(contentsOf(*other) == contents, "the incoming scene stays as it was");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const SceneManagerPtr scene = takeScene(input);
    const SceneManagerPtr other = takeScene(input);
    mergeAndCompare(input, scene, other);
    if (input.flag())
    {
        mergeAndCompare(input, scene, other); // everything clashes
    }
    return 0;
}
