#include "examples/scenetool/ObjMaterials.h"

#include "examples/scenetool/Text.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

#include <locale>
#include <sstream>

namespace velmoran::examples
{
namespace
{
/// The diffuse colour of a material; grey when it has none.
std::string colourOf(const scene::MaterialPtr& material)
{
    const auto parameter =
        material ? material->getParameterByName("diffuse") : scene::MaterialParameterPtr();
    std::istringstream text(parameter ? parameter->getValue() : "");
    text.imbue(std::locale::classic());
    float red = 0.0F;
    float green = 0.0F;
    float blue = 0.0F;
    if (!parameter || parameter->getType() == "texture" || !(text >> red >> green >> blue))
    {
        return "0.8 0.8 0.8";
    }
    return floatText(red) + ' ' + floatText(green) + ' ' + floatText(blue);
}
} // namespace

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

std::string ObjMaterials::use(const std::string& symbol, const scene::MaterialPtr& material)
{
    const std::string name = objName(material ? material->getMaterialID() : symbol);
    m_colours.emplace(name, colourOf(material));
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
