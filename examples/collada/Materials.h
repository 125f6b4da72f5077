#pragma once

#include "examples/collada/Document.h"
#include "examples/collada/Effects.h"
#include "scene/Forward.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace velmoran::examples::collada
{
/// The images, effects and materials of a document.
///
/// Images: those of effects too. The file name is the reference as the document writes
///     it, which is a URI.
/// Effects: the file name is the file that the effect includes, e.g. with its shaders;
///     empty when there is none.
/// Materials: have the technique's SID and parameters of the effect's
///     `<profile_COMMON>` in their order, then one for each `<setparam>` of the
///     material, named by its reference. A `<setparam>` also takes effect where the
///     technique uses it.
class Materials
{
public:
    explicit Materials(Document& document);

    const std::vector<scene::ImagePtr>& getImages() const;
    const std::vector<scene::EffectPtr>& getEffects() const;
    const std::vector<scene::MaterialPtr>& getMaterials() const;

    /// The material of a `<material>`.
    scene::MaterialPtr getMaterial(const pugi::xml_node& material) const;

private:
    void readImages(const pugi::xml_node& parent);
    void readEffect(const pugi::xml_node& effect);
    void readMaterial(const pugi::xml_node& material);
    EffectOverrides readOverrides(const pugi::xml_node& instance, const EffectReader& effect);

    Document& m_document;
    std::vector<scene::ImagePtr> m_images;
    std::vector<scene::EffectPtr> m_effects;
    std::vector<scene::MaterialPtr> m_materials;
    std::unordered_map<const void*, EffectReader> m_readers; ///< by `<effect>`
    std::unordered_map<const void*, scene::MaterialPtr> m_materialsByElement;
};
} // namespace velmoran::examples::collada
