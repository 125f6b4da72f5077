#include "examples/collada/PhysicsMaterials.h"

#include "examples/collada/Values.h"
#include "scene/physics/PhysicsMaterial.h"

#include <boost/make_shared.hpp>

namespace velmoran::examples::collada
{
PhysicsMaterials::PhysicsMaterials(Document& document) : m_document(document)
{
    for (const pugi::xml_node& material :
         document.getIdentified("library_physics_materials", "physics_material"))
    {
        m_materials.push_back(readMaterial(material));
    }
}

const std::vector<scene::PhysicsMaterialPtr>& PhysicsMaterials::getMaterials() const
{
    return m_materials;
}

scene::PhysicsMaterialPtr PhysicsMaterials::getMaterialOf(const pugi::xml_node& user)
{
    pugi::xml_node material = user.child("physics_material");
    if (const pugi::xml_node instance = user.child("instance_physics_material"))
    {
        material = m_document.resolveAttribute(instance, "url", {"physics_material"});
    }
    return material ? readMaterial(material) : scene::PhysicsMaterialPtr();
}

/// Each element gives one material, which all who refer to it share.
scene::PhysicsMaterialPtr PhysicsMaterials::readMaterial(const pugi::xml_node& material)
{
    scene::PhysicsMaterialPtr& result = m_byElement[material.internal_object()];
    if (!result)
    {
        const pugi::xml_node common = material.child("technique_common");
        const auto readCoefficient = [&](const char* name)
        { return readFloat(m_document, common.child(name), 0.0F); };
        result = boost::make_shared<scene::PhysicsMaterial>(
            getAttribute(material, "id"), getAttribute(material, "name"),
            readCoefficient("restitution"), readCoefficient("static_friction"),
            readCoefficient("dynamic_friction"));
    }
    return result;
}
} // namespace velmoran::examples::collada
