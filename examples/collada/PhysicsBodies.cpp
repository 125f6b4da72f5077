#include "examples/collada/PhysicsBodies.h"

#include "examples/collada/AnalyticShape.h"
#include "examples/collada/PhysicsFrame.h"
#include "examples/collada/Values.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/physics/PhysicsRigidBody.h"
#include "scene/physics/PhysicsShape.h"

#include <boost/make_shared.hpp>

#include <string_view>

namespace velmoran::examples::collada
{
namespace
{
bool isAnalytic(std::string_view name)
{
    constexpr std::string_view KINDS[] = {
        "plane", "box", "sphere", "cylinder", "capsule", "tapered_cylinder", "tapered_capsule"};
    for (const std::string_view kind : KINDS)
    {
        if (name == kind)
        {
            return true;
        }
    }
    return false;
}

scene::IPhysicsShapePtr readAnalytic(const Document& document, const pugi::xml_node& element)
{
    const auto shape = boost::make_shared<AnalyticShape>();
    shape->kind = element.name();
    for (const pugi::xml_node& child : element.children())
    {
        if (child.type() == pugi::node_element && std::string_view(child.name()) != "extra")
        {
            shape->measures.emplace(child.name(), readFloats(document, child));
        }
    }
    return shape;
}

scene::InstanceGeometryPtr readGeometry(Document& document, const Meshes& meshes,
                                        const pugi::xml_node& element)
{
    const scene::MeshPtr mesh =
        meshes.getMesh(document.resolveAttribute(element, "url", {"geometry"}));
    if (!mesh)
    {
        document.warn(element, "left out: its geometry was left out");
        return scene::InstanceGeometryPtr();
    }
    return boost::make_shared<scene::InstanceGeometry>(mesh,
                                                       std::map<std::string, scene::MaterialPtr>());
}

scene::PhysicsShapePtr readShape(Document& document, const Meshes& meshes,
                                 PhysicsMaterials& materials, const pugi::xml_node& element)
{
    const auto shape = boost::make_shared<scene::PhysicsShape>();
    shape->setHollow(readBool(document, element.child("hollow"), shape->getHollow()));
    shape->setMass(readFloat(document, element.child("mass"), shape->getMass()));
    shape->setDensity(readFloat(document, element.child("density"), shape->getDensity()));
    const PhysicsFrame frame = readFrame(document, element);
    shape->setRotation(frame.rotation);
    shape->setTranslation(frame.translation);
    shape->setPhysicsMaterial(materials.getMaterialOf(element));
    for (const pugi::xml_node& child : element.children())
    {
        if (std::string_view(child.name()) == "instance_geometry")
        {
            shape->setInstanceGeometry(readGeometry(document, meshes, child));
        }
        else if (isAnalytic(child.name()))
        {
            shape->setShape(readAnalytic(document, child));
        }
    }
    return shape;
}
} // namespace

scene::PhysicsRigidBodyPtr readRigidBody(Document& document, const Meshes& meshes,
                                         PhysicsMaterials& materials, const pugi::xml_node& body)
{
    const std::string sid = getAttribute(body, "sid");
    const pugi::xml_node common = body.child("technique_common");
    const auto result = boost::make_shared<scene::PhysicsRigidBody>(
        sid.empty() ? getAttribute(body, "id") : sid, getAttribute(body, "name"),
        readBool(document, common.child("dynamic"), true));
    result->setMass(readFloat(document, common.child("mass"), result->getMass()));
    result->setPhysicsMaterial(materials.getMaterialOf(common));
    for (const pugi::xml_node& shape : common.children("shape"))
    {
        result->addShape(readShape(document, meshes, materials, shape));
    }
    for (const char* unknown : {"mass_frame", "inertia"})
    {
        if (const pugi::xml_node element = common.child(unknown))
        {
            document.warn(element, "left out: a body of the scene has none");
        }
    }
    return result;
}
} // namespace velmoran::examples::collada
