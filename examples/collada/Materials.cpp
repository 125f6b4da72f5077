#include "examples/collada/Materials.h"

#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <string_view>
#include <utility>

namespace velmoran::examples::collada
{
namespace
{
bool isProfile(const pugi::xml_node& element)
{
    return std::string_view(element.name()).substr(0, 8) == "profile_";
}

/// The file that an effect takes its shaders from; "" when it has none.
std::string findEffectFile(const pugi::xml_node& effect)
{
    for (const pugi::xml_node& child : effect.children())
    {
        const std::string url = getAttribute(child.child("include"), "url");
        if (isProfile(child) && !url.empty())
        {
            return url;
        }
    }
    return getAttribute(effect.child("extra").child("technique").child("import"), "url");
}

/// The value that a `<setparam>` gives to one of these references; null without.
const EffectValue* findOverride(const EffectOverrides& overrides,
                                const std::vector<std::string>& references)
{
    for (const auto& [reference, value] : overrides)
    {
        if (std::find(references.begin(), references.end(), reference) != references.end())
        {
            return &value;
        }
    }
    return nullptr;
}

void addParameter(scene::Material& material, const std::string& name, const EffectValue& value)
{
    material.addMaterialParameter(
        boost::make_shared<scene::MaterialParameter>(name, value.type, value.text));
}
} // namespace

Materials::Materials(Document& document) : m_document(document)
{
    for (const pugi::xml_node& library : document.getRoot().children("library_images"))
    {
        readImages(library);
    }
    for (const pugi::xml_node& effect : document.getIdentified("library_effects", "effect"))
    {
        readEffect(effect);
    }
    for (const pugi::xml_node& material : document.getIdentified("library_materials", "material"))
    {
        readMaterial(material);
    }
}

const std::vector<scene::ImagePtr>& Materials::getImages() const
{
    return m_images;
}

const std::vector<scene::EffectPtr>& Materials::getEffects() const
{
    return m_effects;
}

const std::vector<scene::MaterialPtr>& Materials::getMaterials() const
{
    return m_materials;
}

scene::MaterialPtr Materials::getMaterial(const pugi::xml_node& material) const
{
    const auto found = m_materialsByElement.find(material.internal_object());
    return found == m_materialsByElement.end() ? scene::MaterialPtr() : found->second;
}

void Materials::readImages(const pugi::xml_node& parent)
{
    for (const pugi::xml_node& image : parent.children("image"))
    {
        if (!m_document.ownsItsID(image))
        {
            continue;
        }
        const pugi::xml_node from = image.child("init_from");
        const std::string file = getTrimmedText(from.child("ref") ? from.child("ref") : from);
        if (file.empty())
        {
            m_document.warn(image, "it names no file");
        }
        m_images.push_back(boost::make_shared<scene::Image>(getAttribute(image, "id"), file,
                                                            getAttribute(image, "name")));
    }
}

void Materials::readEffect(const pugi::xml_node& effect)
{
    readImages(effect);
    for (const pugi::xml_node& child : effect.children())
    {
        if (isProfile(child))
        {
            readImages(child);
        }
    }
    m_effects.push_back(boost::make_shared<scene::Effect>(
        getAttribute(effect, "id"), findEffectFile(effect), getAttribute(effect, "name")));
    m_readers.emplace(effect.internal_object(), EffectReader(m_document, effect));
}

void Materials::readMaterial(const pugi::xml_node& material)
{
    const pugi::xml_node instance = material.child("instance_effect");
    if (!instance)
    {
        m_document.fail(material, "it has no <instance_effect>");
    }
    const pugi::xml_node effect = m_document.resolveAttribute(instance, "url", {"effect"});
    const auto result = boost::make_shared<scene::Material>(getAttribute(material, "id"),
                                                            getAttribute(effect, "id"));
    m_materials.push_back(result);
    m_materialsByElement.emplace(material.internal_object(), result);
    const auto found = m_readers.find(effect.internal_object());
    if (found == m_readers.end()) // an effect outside the effect library
    {
        return;
    }
    const EffectReader& reader = found->second;
    const EffectOverrides overrides = readOverrides(instance, reader);
    result->setTechnique(reader.getTechnique());
    for (const EffectReader::Parameter& parameter : reader.getParameters())
    {
        const EffectValue* overriding = findOverride(overrides, parameter.references);
        addParameter(*result, parameter.name, overriding ? *overriding : parameter.value);
    }
    for (const auto& [name, value] : overrides)
    {
        addParameter(*result, name, value);
    }
}

EffectOverrides Materials::readOverrides(const pugi::xml_node& instance, const EffectReader& effect)
{
    EffectOverrides overrides;
    for (const pugi::xml_node& param : instance.children("setparam"))
    {
        std::vector<std::string> references;
        const std::optional<EffectValue> value = effect.readParam(param, references);
        if (value)
        {
            overrides.emplace_back(getAttribute(param, "ref"), *value);
        }
        else
        {
            m_document.warn(param, "left out: its texture or value is not found");
        }
    }
    return overrides;
}
} // namespace velmoran::examples::collada
