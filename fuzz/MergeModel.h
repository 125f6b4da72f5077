#pragma once

#include "fuzz/Input.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IGeometry.h"
#include "scene/graph/LayerManager.h"
#include "scene/manager/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

#include <map>
#include <set>
#include <string>
#include <vector>

/// What becomes of two scenes' libraries when the second is merged into the first, told
/// beforehand in the simplest way and compared afterwards.
namespace velmoran::fuzz
{
using Renames = std::map<std::string, std::string>;

inline const std::string& renamed(const Renames& renames, const std::string& id)
{
    const auto found = renames.find(id);
    return found == renames.end() ? id : found->second;
}

/// Whether `id` is `old` with a generated number behind it.
inline bool isGeneratedFrom(const std::string& id, const std::string& old)
{
    const std::string start = old + "__renamed_OID";
    return id.size() > start.size() + 2 && id.compare(0, start.size(), start) == 0 &&
           id.compare(id.size() - 2, 2, "__") == 0;
}

/// What a scene's libraries hold at one time.
struct Libraries
{
    explicit Libraries(const scene::SceneManager& scene)
        : images(scene.getImageLibrary()),
          effects(scene.getEffectLibrary()),
          materials(scene.getMaterialList())
    {
        for (const std::string& id : scene.getGeometryManager()->getIDs())
        {
            geometries[id] = scene.getGeometryManager()->getGeometry(id);
        }
    }

    std::vector<scene::ImagePtr> images;
    std::vector<scene::EffectPtr> effects;
    std::vector<scene::MaterialPtr> materials;
    std::map<std::string, scene::IGeometryPtr> geometries;
};

/// The names of a scene's layers, by their IDs.
inline std::vector<std::string> layersOf(scene::SceneManager& scene)
{
    std::vector<std::string> names;
    for (int id = 0; !scene.getLayerManager()->getLayerName(id).empty(); ++id)
    {
        names.push_back(scene.getLayerManager()->getLayerName(id));
    }
    return names;
}

/// Walks what a merge has appended to a list that was `before`.
template <typename T>
class Appended
{
public:
    Appended(const std::vector<T>& before, const std::vector<T>& after)
        : m_after(after), m_next(before.size())
    {
        check(after.size() >= before.size() &&
                  std::equal(before.begin(), before.end(), after.begin()),
              "what was there stays in its place");
    }

    const T& next()
    {
        check(m_next < m_after.size(), "nothing that comes in is lost");
        return m_after[m_next++];
    }

    bool isAtEnd() const { return m_next == m_after.size(); }

private:
    const std::vector<T>& m_after;
    std::size_t m_next;
};

template <typename T, typename Getter>
T findByID(const std::vector<T>& list, const std::string& id, Getter getID)
{
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&](const T& item) { return (item.get()->*getID)() == id; });
    return found == list.end() ? T() : *found;
}

/// Compares the libraries after a merge; its members tell what is called how from then on.
class MergedLibraries
{
public:
    MergedLibraries(const Libraries& ours, const Libraries& theirs, const Libraries& merged,
                    int flags)
        : m_ours(ours), m_theirs(theirs), m_merged(merged), m_flags(flags)
    {
        compareImages();
        compareEffects();
        compareMaterials();
        compareGeometries();
    }

    Renames images;
    Renames materials;
    Renames geometries;

private:
    void compareImages()
    {
        using scene::Image;
        Appended<scene::ImagePtr> added(m_ours.images, m_merged.images);
        for (const scene::ImagePtr& image : m_theirs.images)
        {
            const bool clashes = findByID(m_ours.images, image->getID(), &Image::getID) != nullptr;
            if (clashes && (m_flags & scene::SceneManager::DISCARD_REPEATED_IMAGES) != 0)
            {
                continue;
            }
            const std::string id = image->getID() + (clashes ? "__renamed__" : "");
            const scene::ImagePtr copy = added.next();
            check(copy != image && copy->getID() == id &&
                      copy->getFilename() == image->getFilename() &&
                      copy->getName() == image->getName(),
                  "images are copied");
            if (clashes)
            {
                images[image->getID()] = id;
            }
        }
        check(added.isAtEnd(), "number of images");
    }

    void compareEffects()
    {
        using scene::Effect;
        Appended<scene::EffectPtr> added(m_ours.effects, m_merged.effects);
        for (const scene::EffectPtr& effect : m_theirs.effects)
        {
            const auto present = findByID(m_ours.effects, effect->getID(), &Effect::getID);
            if (present && present->getFilename() == effect->getFilename())
            {
                continue;
            }
            const scene::EffectPtr copy = added.next();
            check(copy != effect && copy->getFilename() == effect->getFilename() &&
                      copy->getName() == effect->getName(),
                  "effects are copied");
            noteRename(effect->getID(), copy->getID(), present != nullptr, m_effects);
        }
        check(added.isAtEnd(), "number of effects");
    }

    void compareMaterials()
    {
        using scene::Material;
        Appended<scene::MaterialPtr> added(m_ours.materials, m_merged.materials);
        for (const scene::MaterialPtr& material : m_theirs.materials)
        {
            const std::string effect = renamed(m_effects, material->getEffectID());
            const auto present =
                findByID(m_ours.materials, material->getMaterialID(), &Material::getMaterialID);
            if (present && present->getEffectID() == effect)
            {
                continue;
            }
            const scene::MaterialPtr copy = added.next();
            check(copy != material && copy->getEffectID() == effect &&
                      copy->getTechnique() == material->getTechnique(),
                  "materials are copied");
            compareParameters(*material, *copy);
            noteRename(material->getMaterialID(), copy->getMaterialID(), present != nullptr,
                       materials);
        }
        check(added.isAtEnd(), "number of materials");
    }

    void compareParameters(const scene::Material& material, const scene::Material& copy) const
    {
        check(material.getParametersCount() == copy.getParametersCount(), "number of parameters");
        for (unsigned int i = 0; i < material.getParametersCount(); ++i)
        {
            const scene::MaterialParameterPtr theirs = material.getParameterAt(i);
            const scene::MaterialParameterPtr ours = copy.getParameterAt(i);
            const std::string value = theirs->getType() == "texture"
                                          ? renamed(images, theirs->getValue())
                                          : theirs->getValue();
            check(ours != theirs && ours->getName() == theirs->getName() &&
                      ours->getType() == theirs->getType() && ours->getValue() == value,
                  "parameters are copied, textures follow their images");
        }
    }

    void compareGeometries()
    {
        // By the ID in our library: theirs where it is shared, empty where it is a clone.
        std::map<std::string, scene::IGeometryPtr> incoming;
        for (const auto& [id, geometry] : m_theirs.geometries)
        {
            if (m_ours.geometries.count(id) == 0)
            {
                incoming[id] = geometry;
            }
            else if ((m_flags & scene::SceneManager::DISCARD_REPEATED_GEOMETRIES) == 0)
            {
                incoming[id + "__renamed__"] = scene::IGeometryPtr();
                geometries[id] = id + "__renamed__";
            }
        }
        auto expected = m_ours.geometries;
        expected.insert(incoming.begin(), incoming.end());
        check(expected.size() == m_merged.geometries.size(), "number of geometries");
        for (const auto& [id, geometry] : expected)
        {
            const auto found = m_merged.geometries.find(id);
            check(found != m_merged.geometries.end(), "no geometry is lost");
            check(geometry ? found->second == geometry : isNew(found->second),
                  "geometries are shared, or cloned where they clash");
            check(found->second->getID() == id, "a clone has its new ID");
        }
    }

    bool isNew(const scene::IGeometryPtr& geometry) const
    {
        for (const Libraries* const libraries : {&m_ours, &m_theirs})
        {
            for (const auto& [id, known] : libraries->geometries)
            {
                if (known == geometry)
                {
                    return false;
                }
            }
        }
        return true;
    }

    static void noteRename(const std::string& old, const std::string& id, bool clashes,
                           Renames& renames)
    {
        check(clashes ? isGeneratedFrom(id, old) : id == old, "only what clashes is renamed");
        if (clashes)
        {
            renames[old] = id;
        }
    }

    const Libraries& m_ours;
    const Libraries& m_theirs;
    const Libraries& m_merged;
    const int m_flags;
    Renames m_effects;
};

/// Compares the layers after a merge and tells how each of theirs is called from then on.
inline Renames compareLayers(std::vector<std::string> ours, const std::vector<std::string>& theirs,
                             const std::vector<std::string>& merged, bool discards)
{
    Renames renames;
    for (const std::string& name : std::set<std::string>(theirs.begin(), theirs.end()))
    {
        const bool clashes = std::find(ours.begin(), ours.end(), name) != ours.end();
        const std::string incoming = clashes && !discards ? name + "__renamed__" : name;
        renames[name] = incoming;
        if (std::find(ours.begin(), ours.end(), incoming) == ours.end())
        {
            ours.push_back(incoming);
        }
    }
    check(ours == merged, "layers");
    return renames;
}
} // namespace velmoran::fuzz
