// Random scenes with clashing identifiers are merged: nothing is lost, nothing refers to the
// other scene, counts add up.

#include "core/event/EventManager.h"
#include "fuzz/Input.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"

#include <boost/make_shared.hpp>

#include <map>
#include <set>

using namespace velmoran;
using namespace velmoran::scene;
using fuzz::check;
using fuzz::Input;

namespace
{
void fillLibraries(Input& input, const SceneManagerPtr& scene)
{
    for (unsigned int i = input.below(4); i > 0; --i)
    {
        scene->addImage(boost::make_shared<Image>(input.name("i", 4), input.name("f", 3), ""));
        scene->addEffect(boost::make_shared<Effect>(input.name("e", 4), input.name("f", 3), ""));
        scene->getGeometryManager()->addGeometry(boost::make_shared<Mesh>(input.name("g", 4), ""));
    }
    for (unsigned int i = input.below(4); i > 0; --i)
    {
        const std::vector<EffectPtr> effects = scene->getEffectLibrary();
        const std::string id = input.name("m", 4);
        const EffectPtr effect = effects[input.below(static_cast<unsigned int>(effects.size()))];
        scene->addMaterial(boost::make_shared<Material>(id, effect->getID()));
    }
}

void addNodes(Input& input, const SceneManagerPtr& scene)
{
    std::vector<NodePtr> nodes = {scene->getRoot()};
    for (unsigned int i = input.below(12); i > 0; --i)
    {
        const auto node = boost::make_shared<Node>(scene);
        if (input.below(4) != 0)
        {
            node->setID(input.name("n", 10));
        }
        std::vector<IGeometryPtr> geometries;
        scene->getGeometryManager()->getGeometries(geometries);
        if (!geometries.empty() && input.flag())
        {
            const std::vector<MaterialPtr> materials = scene->getMaterialList();
            node->addInstanceGeometry(boost::make_shared<InstanceGeometry>(
                geometries[input.below(static_cast<unsigned int>(geometries.size()))],
                materials[input.below(static_cast<unsigned int>(materials.size()))]));
        }
        nodes[input.below(static_cast<unsigned int>(nodes.size()))]->addNode(node);
        nodes.push_back(node);
    }
}

SceneManagerPtr takeScene(Input& input)
{
    const auto scene = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    fillLibraries(input, scene);
    addNodes(input, scene);
    return scene;
}

void checkReferences(const SceneManagerPtr& scene)
{
    const std::vector<NodePtr> nodes = scene->getNodeArray();
    const std::set<NodePtr> inTree(nodes.begin(), nodes.end());
    const std::vector<MaterialPtr> list = scene->getMaterialList();
    const std::set<MaterialPtr> materials(list.begin(), list.end());
    for (const NodePtr& node : nodes)
    {
        check(node == scene->getRoot() || inTree.count(node->getParent()) == 1, "parents are ours");
        for (unsigned int i = 0; i < node->getInstanceGeometryCount(); ++i)
        {
            const InstanceGeometryPtr instance = node->getInstanceGeometry(i);
            const IGeometryPtr geometry = instance->getGeometry();
            check(scene->getGeometryManager()->getGeometry(geometry->getID()) == geometry,
                  "instanced geometry is in the library");
            for (const auto& [symbol, material] : instance->getMaterialMap())
            {
                check(!material || materials.count(material) == 1, "bound materials are ours");
            }
        }
    }
    for (const MaterialPtr& material : list)
    {
        check(scene->getEffectByID(material->getEffectID()) != nullptr, "effects are there");
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const SceneManagerPtr scene = takeScene(input);
    const SceneManagerPtr other = takeScene(input);
    const int flags = static_cast<int>(input.below(64));
    const std::string parent = input.name("n", 10);

    const std::vector<NodePtr> before = scene->getNodeArray();
    const std::vector<NodePtr> theirs = other->getNodeArray();
    std::map<NodePtr, std::string> names;
    for (const NodePtr& node : before)
    {
        names[node] = node->getID();
    }
    const std::size_t images = scene->getImageLibrary().size();
    const std::size_t materials = scene->getMaterialList().size();
    scene->mergeSceneManager(other, flags, parent);

    const std::vector<NodePtr> after = scene->getNodeArray();
    const std::set<NodePtr> left(after.begin(), after.end());
    for (const auto& [node, name] : names)
    {
        check(left.count(node) == 1 && node->getID() == name, "nobody present is lost or renamed");
    }
    for (const NodePtr& node : theirs)
    {
        check(left.count(node) == 0, "nodes are copied");
    }
    const int dropping = SceneManager::DISCARD_REPEATED_NODES | SceneManager::MERGE_REPEATED_NODES;
    check((flags & dropping) != 0 || after.size() == before.size() + theirs.size(),
          "all nodes come in");
    check(scene->getImageLibrary().size() >= images && scene->getMaterialList().size() >= materials,
          "libraries only grow");
    check(other->getNodeArray() == theirs, "the incoming scene stays as it was");
    checkReferences(scene);
    checkReferences(other);
    return 0;
}
