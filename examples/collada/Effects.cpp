#include "examples/collada/Effects.h"

#include "examples/collada/Values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace velmoran::examples::collada
{
namespace
{
constexpr std::string_view SHADING_MODELS[] = {"constant", "lambert", "phong", "blinn"};
constexpr std::string_view SHADING_PARAMETERS[] = {
    "emission",   "ambient",      "diffuse",     "specular",     "shininess",
    "reflective", "reflectivity", "transparent", "transparency", "index_of_refraction"};

template <typename Names>
bool contains(const Names& names, std::string_view name)
{
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/// The numbers, each as the shortest text that reads back to the same float. Never
/// long, whatever the document wrote: every material of an effect has its own copy.
std::string joinFloats(const std::vector<float>& values)
{
    std::string text;
    std::array<char, 32> buffer;
    for (const float value : values)
    {
        const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
        text += text.empty() ? "" : " ";
        text.append(buffer.data(), end);
    }
    return text;
}

pugi::xml_node findSampler(const pugi::xml_node& param)
{
    return param.find_child([](const pugi::xml_node& child)
                            { return std::string_view(child.name()).substr(0, 7) == "sampler"; });
}
} // namespace

EffectReader::EffectReader(Document& document, const pugi::xml_node& effect) : m_document(document)
{
    const pugi::xml_node profile = effect.child("profile_COMMON");
    const pugi::xml_node technique = profile.child("technique");
    m_technique = getAttribute(technique, "sid");
    // The innermost definition of a SID counts, and the first one stays.
    readNewParams(technique);
    readNewParams(profile);
    readNewParams(effect);
    readShading(document, technique.find_child([](const pugi::xml_node& child)
                                               { return contains(SHADING_MODELS, child.name()); }));
}

const std::string& EffectReader::getTechnique() const
{
    return m_technique;
}

const std::vector<EffectReader::Parameter>& EffectReader::getParameters() const
{
    return m_parameters;
}

void EffectReader::readNewParams(const pugi::xml_node& parent)
{
    for (const pugi::xml_node& param : parent.children("newparam"))
    {
        m_newParams.emplace(getAttribute(param, "sid"), param);
    }
}

void EffectReader::readShading(Document& document, const pugi::xml_node& shading)
{
    for (const pugi::xml_node& element : shading.children())
    {
        const std::string name = element.name();
        const bool isKnown = std::any_of(m_parameters.begin(), m_parameters.end(),
                                         [&name](const Parameter& p) { return p.name == name; });
        if (isKnown || !contains(SHADING_PARAMETERS, name))
        {
            continue;
        }
        Parameter parameter;
        parameter.name = name;
        const std::optional<EffectValue> value = readShadingValue(element, parameter.references);
        if (value)
        {
            parameter.value = *value;
            m_parameters.push_back(std::move(parameter));
        }
        else
        {
            document.warn(element, "left out: its texture or value is not found");
        }
    }
}

std::optional<EffectValue>
EffectReader::readShadingValue(const pugi::xml_node& parameter,
                               std::vector<std::string>& references) const
{
    if (const pugi::xml_node color = parameter.child("color"))
    {
        return readColor(color);
    }
    if (const pugi::xml_node number = parameter.child("float"))
    {
        return EffectValue{"float", joinFloats(readFloats(m_document, number, 1))};
    }
    if (const pugi::xml_node texture = parameter.child("texture"))
    {
        return readReferred(getAttribute(texture, "texture"), references);
    }
    return readReferred(getAttribute(parameter.child("param"), "ref"), references);
}

std::optional<EffectValue> EffectReader::readColor(const pugi::xml_node& element) const
{
    const std::vector<float> values = readFloats(m_document, element);
    if (values.size() != 3 && values.size() != 4)
    {
        m_document.fail(element,
                        "a color has three or four numbers, not " + std::to_string(values.size()));
    }
    return EffectValue{"color", joinFloats(values)};
}

/// What the `<newparam>` `sid` holds. Old documents name images directly here.
std::optional<EffectValue> EffectReader::readReferred(const std::string& sid,
                                                      std::vector<std::string>& references) const
{
    const auto param = m_newParams.find(sid);
    if (param == m_newParams.end())
    {
        return readImageReference(sid);
    }
    references.push_back(sid);
    return readParam(param->second, references);
}

std::optional<EffectValue> EffectReader::readParam(const pugi::xml_node& param,
                                                   std::vector<std::string>& references) const
{
    if (const pugi::xml_node sampler = findSampler(param))
    {
        return readSampler(sampler, references);
    }
    if (const pugi::xml_node surface = param.child("surface"))
    {
        return readImageReference(getTrimmedText(surface.child("init_from")));
    }
    for (const char* color : {"float4", "float3", "color"})
    {
        if (const pugi::xml_node element = param.child(color))
        {
            return readColor(element);
        }
    }
    if (const pugi::xml_node number = param.child("float"))
    {
        return EffectValue{"float", joinFloats(readFloats(m_document, number, 1))};
    }
    const pugi::xml_node other = param.find_child(
        [](const pugi::xml_node& child) {
            return child.type() == pugi::node_element &&
                   child.first_child().type() == pugi::node_pcdata;
        });
    return other ? std::optional<EffectValue>({other.name(), getTrimmedText(other)}) : std::nullopt;
}

/// The image of a sampler: named directly, or by the surface that it samples.
std::optional<EffectValue> EffectReader::readSampler(const pugi::xml_node& sampler,
                                                     std::vector<std::string>& references) const
{
    if (const pugi::xml_node instance = sampler.child("instance_image"))
    {
        const std::string url = getAttribute(instance, "url");
        return readImageReference(url.empty() ? url : url.substr(1));
    }
    const std::string sid = getTrimmedText(sampler.child("source"));
    const auto surface = m_newParams.find(sid);
    if (surface == m_newParams.end())
    {
        return readImageReference(sid);
    }
    references.push_back(sid);
    return readImageReference(getTrimmedText(surface->second.child("surface").child("init_from")));
}

std::optional<EffectValue> EffectReader::readImageReference(const std::string& id) const
{
    if (!m_document.find(id, {"image"}))
    {
        return std::nullopt;
    }
    return EffectValue{"texture", id};
}
} // namespace velmoran::examples::collada
