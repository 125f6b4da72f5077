// Merging of another scene's content into a scene manager.

#include "core/event/EventManager.h"
#include "scene/EventTypes.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneAttempt.h"
#include "scene/manager/SceneGraphMerger.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <set>
#include <unordered_map>

namespace velmoran::scene
{
namespace
{
/// The first item of each identifier.
template <typename T, typename Getter>
std::unordered_map<std::string, boost::shared_ptr<T>> firstByID(const Library<T>& library,
                                                                Getter getID)
{
    std::unordered_map<std::string, boost::shared_ptr<T>> result;
    for (const boost::shared_ptr<T>& item : library.items())
    {
        result.emplace((item.get()->*getID)(), item);
    }
    return result;
}

template <typename T>
boost::shared_ptr<T> findIn(const std::unordered_map<std::string, boost::shared_ptr<T>>& items,
                            const std::string& id)
{
    const auto found = items.find(id);
    return found == items.end() ? boost::shared_ptr<T>() : found->second;
}

/// Needs a `SceneAttempt` around it.
template <typename T, typename Getter>
void appendAll(SceneManager& scene, Library<T>& library,
               const std::vector<boost::shared_ptr<T>>& items, Getter getID)
{
    library.makeRoom(items.size());
    for (const boost::shared_ptr<T>& item : items)
    {
        library.add(item);
        scene.addID((item.get()->*getID)());
    }
}

/// `material` under new identifiers, with parameter objects of its own.
MaterialPtr copyMaterial(const Material& material, const std::string& id,
                         const std::string& effectID, const RenameMap& imageRenames)
{
    const MaterialPtr copy = boost::make_shared<Material>(id, effectID);
    copy->setTechnique(material.getTechnique());
    for (const MaterialParameterPtr& parameter : material.getMaterialParameters())
    {
        if (!parameter)
        {
            copy->addMaterialParameter(parameter); // it keeps its place
            continue;
        }
        const auto copied = boost::make_shared<MaterialParameter>(
            parameter->getName(), parameter->getType(), parameter->getValue());
        const auto renamed = imageRenames.find(parameter->getValue());
        if (parameter->getType() == "texture" && renamed != imageRenames.end())
        {
            copied->setValue(renamed->second);
        }
        copy->addMaterialParameter(copied);
    }
    return copy;
}
/// Gives the primitives of a clone the material symbols of those that they were cloned
/// from, which instances bind materials to.
void copyMaterialSymbols(const IGeometryPtr& from, const IGeometryPtr& to)
{
    const auto source = boost::dynamic_pointer_cast<Mesh>(from);
    const auto clone = boost::dynamic_pointer_cast<Mesh>(to);
    for (unsigned int i = 0; source && clone && i < source->getPrimitiveCount(); ++i)
    {
        const IMeshPrimitivePtr primitive = clone->getPrimitive(i);
        if (primitive)
        {
            primitive->setMaterialSymbol(source->getPrimitive(i)->getMaterialSymbol());
        }
    }
}

/// Merges the geometry of another scene, and takes it back unless it is kept.
class GeometryMerging
{
public:
    GeometryMerging(const GeometryManagerPtr& into, const GeometryManagerPtr& other)
        : m_into(into), m_other(other)
    {
        const std::vector<std::string> ids = into->getIDs();
        const std::set<std::string> present(ids.begin(), ids.end());
        for (const std::string& id : other->getIDs())
        {
            for (const std::string& newID : {id, id + "__renamed__"})
            {
                if (present.count(newID) == 0)
                {
                    m_newIDs.insert(newID);
                }
            }
        }
    }

    ~GeometryMerging()
    {
        for (const std::string& id : m_newIDs)
        {
            m_into->removeGeometry(id);
        }
    }

    GeometryMerging(const GeometryMerging&) = delete;
    GeometryMerging& operator=(const GeometryMerging&) = delete;

    RenameMap merge(bool discardRepeated)
    {
        RenameMap renames = m_into->mergeGeometries(m_other, discardRepeated);
        for (const auto& [oldID, newID] : renames)
        {
            // A clone whose new ID was taken, here or by another incoming geometry, was not
            // kept; the latter belongs to the incoming scene.
            const IGeometryPtr renamed = m_into->getGeometry(newID);
            if (m_newIDs.count(newID) != 0 && renamed != m_other->getGeometry(newID))
            {
                copyMaterialSymbols(m_other->getGeometry(oldID), renamed);
            }
        }
        return renames;
    }

    void keep() { m_newIDs.clear(); }

private:
    const GeometryManagerPtr m_into;
    const GeometryManagerPtr m_other;
    std::set<std::string> m_newIDs; ///< not there before, perhaps there after merging
};
} // namespace

void SceneManager::mergeSceneManager(const boost::shared_ptr<SceneManager>& other, int flags,
                                     std::string parentNodeID)
{
    if (!other || other.get() == this)
    {
        return;
    }
    const boost::shared_ptr<SceneManager> self = shared_from_this(); // listeners may let go
    const boost::shared_ptr<SceneManager> kept = other;
    const auto isSet = [flags](MergeFlags flag) { return (flags & flag) != 0; };

    GeometryMerging geometries(getGeometryManager(), kept->getGeometryManager());
    SceneAttempt attempt(*this); // ends first: its nodes hold geometry

    const RenameMap geometryRenames = geometries.merge(isSet(DISCARD_REPEATED_GEOMETRIES));
    addGeometryIDs(*getGeometryManager());
    const RenameMap imageRenames =
        mergeImageLibrary(kept->m_images.items(), isSet(DISCARD_REPEATED_IMAGES));
    const RenameMap effectRenames = mergeEffectLibrary(kept->m_effects.items());
    const RenameMap materialRenames = mergeMaterialLibrary(kept->m_materials.items(), imageRenames,
                                                           effectRenames, isSet(MATERIAL_FLAG));
    const std::map<int, int> layerMap =
        m_layerManager->mergeLayers(kept->m_layerManager, isSet(DISCARD_REPEATED_LAYERS));

    if (kept->m_root)
    {
        const NodePtr named = parentNodeID.empty() ? NodePtr() : getNodeByID(parentNodeID);
        mergeSceneGraph(named ? named : getRoot(), kept->m_root, geometryRenames, effectRenames,
                        materialRenames, layerMap, isSet(DISCARD_REPEATED_NODES),
                        isSet(MERGE_REPEATED_NODES));
    }
    attempt.keep();
    geometries.keep();

    raise(events::sceneUpdate(), "");
    raise(events::sceneUpdate(), "MaterialList");
    raise(events::syncScene(), "");
}

RenameMap SceneManager::mergeImageLibrary(const std::vector<ImagePtr>& images, bool discardRepeated)
{
    SceneAttempt attempt(*this);
    const auto present = firstByID(m_images, &Image::getID);
    RenameMap renames;
    std::vector<ImagePtr> added;
    for (const ImagePtr& image : images)
    {
        if (!image)
        {
            continue;
        }
        std::string id = image->getID();
        if (findIn(present, id))
        {
            if (discardRepeated)
            {
                m_logger << "[INFO] Found repeated Image ID with same filename. Discarded.";
                continue;
            }
            id += "__renamed__";
            renames[image->getID()] = id;
            m_logger << "[INFO] Found repeated Image ID. Renamed " + image->getID() + " to " + id;
        }
        added.push_back(boost::make_shared<Image>(id, image->getFilename(), image->getName()));
    }
    const std::string message = "[INFO] Added " + std::to_string(added.size()) + " new images.";
    appendAll(*this, m_images, added, &Image::getID);
    attempt.keep();
    m_logger << message;
    return renames;
}

RenameMap SceneManager::mergeEffectLibrary(const std::vector<EffectPtr>& effects)
{
    SceneAttempt attempt(*this);
    const auto present = firstByID(m_effects, &Effect::getID);
    RenameMap renames;
    std::vector<EffectPtr> added;
    for (const EffectPtr& effect : effects)
    {
        if (!effect)
        {
            continue;
        }
        std::string id = effect->getID();
        const EffectPtr repeated = findIn(present, id);
        if (repeated && repeated->getFilename() == effect->getFilename())
        {
            m_logger << "[INFO] Found repeated Effect ID with same filename. Discarded.";
            continue;
        }
        if (repeated)
        {
            id += "__renamed_" + generateID() + "__";
            renames[effect->getID()] = id;
            m_logger << "[INFO] Found repeated Effect ID. Renamed " + effect->getID() + " to " + id;
        }
        added.push_back(boost::make_shared<Effect>(id, effect->getFilename(), effect->getName()));
    }
    const std::string message = "[INFO] Added " + std::to_string(added.size()) + " new effects.";
    appendAll(*this, m_effects, added, &Effect::getID);
    attempt.keep();
    m_logger << message;
    return renames;
}

RenameMap SceneManager::mergeMaterialLibrary(const std::vector<MaterialPtr>& materials,
                                             const RenameMap& imageRenames,
                                             const RenameMap& effectRenames, bool)
{
    SceneAttempt attempt(*this);
    const auto present = firstByID(m_materials, &Material::getMaterialID);
    RenameMap renames;
    std::vector<MaterialPtr> added;
    for (const MaterialPtr& material : materials)
    {
        if (!material)
        {
            continue;
        }
        std::string id = material->getMaterialID();
        const auto renamedEffect = effectRenames.find(material->getEffectID());
        const std::string effectID =
            renamedEffect == effectRenames.end() ? material->getEffectID() : renamedEffect->second;
        const MaterialPtr repeated = findIn(present, id);
        if (repeated && repeated->getEffectID() == effectID)
        {
            m_logger << "[INFO] Found repeated Material ID with same effectID: " + id +
                            ". Discarded.";
            continue;
        }
        if (repeated)
        {
            id += "__renamed_" + generateID() + "__";
            renames[material->getMaterialID()] = id;
            m_logger << "[INFO] Found repeated Material ID. Renamed " + material->getMaterialID() +
                            " to " + id;
        }
        added.push_back(copyMaterial(*material, id, effectID, imageRenames));
        m_logger << "[INFO] Addded new Material: " + id;
    }
    const std::string message = "[INFO] Added " + std::to_string(added.size()) + " new Materials.";
    appendAll(*this, m_materials, added, &Material::getMaterialID);
    attempt.keep();
    m_logger << message;
    raise(events::sceneUpdate(), "MaterialList");
    return renames;
}

void SceneManager::mergeSceneGraph(const NodePtr& parent, const NodePtr& source,
                                   const RenameMap& geometryRenames, const RenameMap&,
                                   const RenameMap& materialRenames,
                                   const std::map<int, int>& layerMap, bool discardRepeated,
                                   bool mergeRepeated)
{
    if (!parent || !source)
    {
        return;
    }
    const boost::shared_ptr<SceneManager> self = shared_from_this(); // listeners may let go
    SceneAttempt attempt(*this);
    SceneGraphMerger merger(*this, m_root, parent, m_logger,
                            {geometryRenames, materialRenames, layerMap}, attempt);
    merger.merge(source, discardRepeated, mergeRepeated);
    attempt.keep();
}
} // namespace velmoran::scene
