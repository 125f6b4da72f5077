// Streams and geometries that take the place of others throughout a scene.

#include "core/event/EventManager.h"
#include "scene/EventTypes.h"
#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Morph.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <set>

namespace velmoran::scene
{
namespace
{
/// What uses geometries in a scene, each once.
struct GeometryUsers
{
    std::set<InstanceGeometryPtr> instances; ///< of nodes and of controller instances
    std::set<ControllerPtr> controllers;     ///< of the library and of controller instances

    GeometryUsers(const std::vector<NodePtr>& nodes, const std::vector<ControllerPtr>& library)
        : controllers(library.begin(), library.end())
    {
        for (const NodePtr& node : nodes)
        {
            instances.insert(node->getInstancedGeometries().begin(),
                             node->getInstancedGeometries().end());
            for (const InstanceControllerPtr& instance : node->getInstancedControllers())
            {
                instances.insert(instance->getInstanceGeometry());
                controllers.insert(instance->getController());
            }
        }
        instances.erase(InstanceGeometryPtr());
        controllers.erase(ControllerPtr());
    }
};

/// The present bindings of the symbols that the primitives of `geometry` use; empty handles
/// for those that are not bound.
InstanceGeometry::MaterialMap bindingsFor(const IGeometry& geometry,
                                          const InstanceGeometry& instance)
{
    InstanceGeometry::MaterialMap bindings;
    const auto* const mesh = dynamic_cast<const Mesh*>(&geometry);
    if (mesh != nullptr)
    {
        for (const IMeshPrimitivePtr& primitive : mesh->getMeshPrimitives())
        {
            const std::string symbol = primitive->getMaterialSymbol();
            bindings[symbol] = instance.getMaterial(symbol);
        }
    }
    return bindings;
}

void replaceIn(InstanceGeometry& instance, const IGeometryPtr& geometry)
{
    instance.setMaterialMap(bindingsFor(*geometry, instance));
    instance.assembleMaterialsList();
    instance.setGeometry(geometry);
}
} // namespace

void SceneManager::replaceSharedStreams(const StreamPtr& current, const StreamPtr& stream)
{
    const StreamPtr replaced = current; // the arguments may be entries that are overwritten
    const StreamPtr kept = stream;
    if (!replaced || !kept)
    {
        return;
    }
    const GeometryUsers users(getNodeArray(), m_controllers.items());
    std::vector<IGeometryPtr> geometries;
    getGeometryManager()->getGeometries(geometries);
    std::set<IGeometryPtr> held(geometries.begin(), geometries.end());
    for (const InstanceGeometryPtr& instance : users.instances)
    {
        held.insert(instance->getGeometry());
    }
    for (const ControllerPtr& controller : users.controllers)
    {
        const SkinPtr skin = controller->getSkin();
        if (skin)
        {
            held.insert(skin->getSourceGeometry());
            skin->replaceStream(replaced, kept);
        }
        if (controller->getMorph())
        {
            held.insert(controller->getMorph()->getSourceGeometry());
        }
    }
    for (const IGeometryPtr& geometry : held)
    {
        auto* const mesh = dynamic_cast<Mesh*>(geometry.get());
        if (mesh != nullptr)
        {
            mesh->replaceStream(replaced, kept);
        }
    }
}

void SceneManager::replaceGeometry(const std::string& id, const IGeometryPtr& geometry)
{
    const SceneManagerPtr self = weak_from_this().lock(); // listeners may let go
    const std::string replacedID = id;
    const IGeometryPtr kept = geometry;
    const GeometryManagerPtr library = getGeometryManager();
    const IGeometry* const replaced = library->getGeometry(replacedID).get();
    if (!kept || replaced == nullptr)
    {
        return;
    }
    // The library goes last: it frees what nobody else holds any more.
    const GeometryUsers users(getNodeArray(), m_controllers.items());
    for (const InstanceGeometryPtr& instance : users.instances)
    {
        if (instance->getGeometry().get() == replaced)
        {
            replaceIn(*instance, kept);
        }
    }
    for (const ControllerPtr& controller : users.controllers)
    {
        const SkinPtr skin = controller->getSkin();
        const MorphPtr morph = controller->getMorph();
        if (skin && skin->getSourceGeometry().get() == replaced)
        {
            skin->setSourceGeometry(kept);
        }
        if (morph && morph->getSourceGeometry().get() == replaced)
        {
            morph->setSourceGeometry(kept);
        }
    }
    library->replaceGeometry(replacedID, kept);
    raise(events::geometryTopologyUpdate(), replacedID);
    raise(events::syncScene(), "");
}
} // namespace velmoran::scene
