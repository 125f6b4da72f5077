#pragma once

#include "examples/collada/Document.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace velmoran::examples::collada
{
/// A value as material parameters hold it: type and text.
///
/// | type      | text                                             |
/// |-----------|--------------------------------------------------|
/// | "texture" | the ID of an image                               |
/// | "color"   | three or four numbers                            |
/// | "float"   | one number                                       |
/// | other     | text of a parameter element; the type is its tag |
struct EffectValue
{
    std::string type;
    std::string text;
};

/// The values that the `<setparam>` of a material give, with the SIDs they are for.
using EffectOverrides = std::vector<std::pair<std::string, EffectValue>>;

/// What `<profile_COMMON>` of one effect says to the materials that use it.
class EffectReader
{
public:
    /// A parameter of the technique, e.g. "diffuse".
    struct Parameter
    {
        std::string name;
        EffectValue value;
        std::vector<std::string> references; ///< SIDs of the `<newparam>` it goes through
    };

    /// Reads the `<effect>`. Warns about textures whose image is not found.
    EffectReader(Document& document, const pugi::xml_node& effect);

    /// The technique's SID.
    const std::string& getTechnique() const;
    const std::vector<Parameter>& getParameters() const;

    /// The value in a `<newparam>` or `<setparam>`; the SIDs on the way to it are
    /// appended to `references`. Nothing when there is none that is understood.
    std::optional<EffectValue> readParam(const pugi::xml_node& param,
                                         std::vector<std::string>& references) const;

private:
    void readNewParams(const pugi::xml_node& parent);
    void readShading(Document& document, const pugi::xml_node& shading);
    std::optional<EffectValue> readShadingValue(const pugi::xml_node& parameter,
                                                std::vector<std::string>& references) const;
    std::optional<EffectValue> readColor(const pugi::xml_node& element) const;
    std::optional<EffectValue> readReferred(const std::string& sid,
                                            std::vector<std::string>& references) const;
    std::optional<EffectValue> readSampler(const pugi::xml_node& sampler,
                                           std::vector<std::string>& references) const;
    std::optional<EffectValue> readImageReference(const std::string& id) const;

    const Document& m_document;
    std::string m_technique;
    std::vector<Parameter> m_parameters;
    std::unordered_map<std::string, pugi::xml_node> m_newParams; ///< by SID
};
} // namespace velmoran::examples::collada
