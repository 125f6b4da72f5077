#include "examples/scenetool/ObjMaterials.h"

#include "examples/scenetool/Text.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

#include <locale>
#include <sstream>

namespace velmoran::examples
{
std::string objName(const std::string& name)
{
    std::string result = name.empty() ? "unnamed" : name;
    for (char& c : result)
    {
        const auto code = static_cast<unsigned char>(c);
        c = code <= 0x20 || code == 0x7f ? '_' : c;
    }
    return result;
}

Eigen::Vector3f diffuseColour(const scene::MaterialPtr& material)
{
    const auto parameter =
        material ? material->getParameterByName("diffuse") : scene::MaterialParameterPtr();
    std::istringstream text(parameter ? parameter->getValue() : "");
    text.imbue(std::locale::classic());
    Eigen::Vector3f colour;
    if (!parameter || parameter->getType() == "texture" ||
        !(text >> colour.x() >> colour.y() >> colour.z()))
    {
        colour.setConstant(0.8F);
    }
    return colour;
}

std::string ObjMaterials::use(const std::string& symbol, const scene::MaterialPtr& material)
{
    const std::string name = objName(material ? material->getMaterialID() : symbol);
    const Eigen::Vector3f colour = diffuseColour(material);
    m_colours.emplace(name, floatText(colour.x()) + ' ' + floatText(colour.y()) + ' ' +
                                floatText(colour.z()));
    return name;
}

std::string ObjMaterials::getText() const
{
    std::string text = "# Written by scenetool\n";
    for (const auto& [name, colour] : m_colours)
    {
        text += "newmtl " + name + "\nKd " + colour + "\nillum 1\n";
    }
    return text;
}
} // namespace velmoran::examples
