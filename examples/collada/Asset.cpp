#include "examples/collada/Asset.h"

#include "examples/collada/Numbers.h"

namespace velmoran::examples::collada
{
Asset readAsset(Document& document)
{
    Asset result;
    const pugi::xml_node asset = document.getRoot().child("asset");
    if (const pugi::xml_node element = asset.child("up_axis"))
    {
        const std::string axis = getTrimmedText(element);
        if (axis == "X_UP" || axis == "Z_UP")
        {
            result.upAxis = axis == "X_UP" ? scene::X_UP : scene::Z_UP;
        }
        else if (axis != "Y_UP")
        {
            document.warn(element, quote(axis) + " is taken as Y_UP");
        }
    }
    if (const pugi::xml_attribute meter = asset.child("unit").attribute("meter"))
    {
        float value = 0.0F;
        if (!parseFloat(meter.value(), value) || !(value > 0.0F))
        {
            document.warn(asset.child("unit"), quote(meter.value()) + " metres are taken as 1");
            value = 1.0F;
        }
        result.meter = value;
    }
    return result;
}
} // namespace velmoran::examples::collada
