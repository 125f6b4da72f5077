// Streams and geometries that take the place of others throughout a scene.

#include "core/event/EventManager.h"
#include "scene/EventTypes.h"
#include "scene/deform/Controller.h"
#include "scene/deform/Morph.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/manager/GeometryUsers.h"
#include "scene/manager/SceneManager.h"
#include "scene/manager/StreamUsers.h"

#include <boost/make_shared.hpp>

#include <utility>
#include <vector>

namespace velmoran::scene
{
namespace
{
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

/// The replacement of a geometry by another in everything that uses it.
class GeometryReplacement
{
public:
    GeometryReplacement(const GeometryUsers& users, const IGeometryPtr& replaced,
                        const IGeometryPtr& geometry)
    {
        for (const InstanceGeometryPtr& instance : users.instances)
        {
            if (instance->getGeometry() == replaced)
            {
                m_instances.emplace_back(instance,
                                         boost::make_shared<InstanceGeometry>(
                                             geometry, bindingsFor(*geometry, *instance)));
            }
        }
        for (const ControllerPtr& controller : users.controllers)
        {
            const SkinPtr skin = controller->getSkin();
            const MorphPtr morph = controller->getMorph();
            if (skin && skin->getSourceGeometry() == replaced)
            {
                m_skins.push_back(skin);
            }
            if (morph && morph->getSourceGeometry() == replaced)
            {
                m_morphs.push_back(morph);
            }
        }
    }

    /// Lets the users have `geometry`. Needs no memory.
    void apply(const IGeometryPtr& geometry)
    {
        for (const auto& [instance, other] : m_instances)
        {
            instance->exchange(*other);
        }
        m_instances.clear(); // what it holds may be freed now
        for (const SkinPtr& skin : m_skins)
        {
            skin->setSourceGeometry(geometry);
        }
        for (const MorphPtr& morph : m_morphs)
        {
            morph->setSourceGeometry(geometry);
        }
    }

private:
    std::vector<std::pair<InstanceGeometryPtr, InstanceGeometryPtr>> m_instances;
    std::vector<SkinPtr> m_skins;
    std::vector<MorphPtr> m_morphs;
};
} // namespace

void SceneManager::replaceSharedStreams(const StreamPtr& current, const StreamPtr& stream)
{
    const StreamPtr replaced = current; // the arguments may be entries that are overwritten
    const StreamPtr kept = stream;
    if (!replaced || !kept)
    {
        return;
    }
    const StreamUsers users(*this);
    users.replace(replaced, kept);
}

void SceneManager::replaceGeometry(const std::string& id, const IGeometryPtr& geometry)
{
    const SceneManagerPtr self = weak_from_this().lock(); // listeners may let go
    const std::string replacedID = id;
    const IGeometryPtr kept = geometry;
    const GeometryManagerPtr library = getGeometryManager();
    IGeometryPtr replaced = library->getGeometry(replacedID);
    if (!kept || !replaced)
    {
        return;
    }
    GeometryReplacement replacement(GeometryUsers(*this), replaced, kept);
    library->replaceGeometry(replacedID, kept);
    replacement.apply(kept); // nothing fails from here on
    GeometryManager::letGo(std::move(replaced));
    raise(events::geometryTopologyUpdate(), replacedID);
    raise(events::syncScene(), "");
}
} // namespace velmoran::scene
