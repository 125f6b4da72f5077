#include "examples/collada/PhysicsModels.h"

#include "examples/collada/PhysicsBodies.h"
#include "examples/collada/PhysicsFrame.h"
#include "examples/collada/Values.h"
#include "scene/physics/PhysicsAttachment.h"
#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsRigidBody.h"
#include "scene/physics/PhysicsRigidConstraint.h"

#include <boost/make_shared.hpp>

#include <string_view>

namespace velmoran::examples::collada
{
namespace
{
using Limit = scene::PhysicsRigidConstraint::Vec3;

/// Three numbers; zeros when the element is missing.
Limit readLimit(const Document& document, const pugi::xml_node& element)
{
    const std::vector<float> values =
        element ? readFloats(document, element, 3) : std::vector<float>(3, 0.0F);
    return {values[0], values[1], values[2]};
}

/// Lists `item` under `sid`, if it has one that no other has.
template <typename Item>
void addBySid(Document& document, std::unordered_map<std::string, Item>& items,
              const std::string& sid, const Item& item, const pugi::xml_node& element)
{
    if (!sid.empty() && !items.emplace(sid, item).second)
    {
        document.warn(element, "another one of its model has the sid " + quote(sid) +
                                   "; references find that");
    }
}
} // namespace

PhysicsModels::PhysicsModels(Document& document, const Meshes& meshes, PhysicsMaterials& materials)
    : m_document(document)
{
    const std::vector<pugi::xml_node> models =
        document.getIdentified("library_physics_models", "physics_model");
    for (const pugi::xml_node& model : models)
    {
        readBodies(meshes, materials, model);
    }
    // Behind all bodies, which they refer to.
    for (std::size_t i = 0; i < models.size(); ++i)
    {
        readConstraints(m_entries[i], models[i]);
    }
}

std::vector<scene::PhysicsModelPtr> PhysicsModels::getModels() const
{
    std::vector<scene::PhysicsModelPtr> models;
    for (const PhysicsModelEntry& entry : m_entries)
    {
        models.push_back(entry.model);
    }
    return models;
}

const PhysicsModelEntry* PhysicsModels::getEntry(const pugi::xml_node& model) const
{
    const auto place = m_places.find(model.internal_object());
    return place == m_places.end() ? nullptr : &m_entries[place->second];
}

void PhysicsModels::readBodies(const Meshes& meshes, PhysicsMaterials& materials,
                               const pugi::xml_node& model)
{
    m_places.emplace(model.internal_object(), m_entries.size());
    PhysicsModelEntry& entry = m_entries.emplace_back();
    entry.model = boost::make_shared<scene::PhysicsModel>(getAttribute(model, "id"),
                                                          getAttribute(model, "name"));
    std::vector<scene::PhysicsRigidBodyPtr> bodies;
    for (const pugi::xml_node& element : model.children("rigid_body"))
    {
        bodies.push_back(readRigidBody(m_document, meshes, materials, element));
        m_bodies.emplace(element.internal_object(), bodies.back());
        addBySid(m_document, entry.bodies, bodies.back()->getID(), bodies.back(), element);
    }
    entry.model->setRigidBodyLibrary(bodies);
    for (const pugi::xml_node& inner : model.children("instance_physics_model"))
    {
        m_document.warn(inner, "left out: a model of the scene holds no other models");
    }
}

void PhysicsModels::readConstraints(PhysicsModelEntry& entry, const pugi::xml_node& model)
{
    std::vector<scene::PhysicsRigidConstraintPtr> constraints;
    for (const pugi::xml_node& element : model.children("rigid_constraint"))
    {
        constraints.push_back(readConstraint(entry, element));
        addBySid(m_document, entry.constraints, constraints.back()->getSid(), constraints.back(),
                 element);
    }
    entry.model->setRigidConstraintLibrary(constraints);
}

scene::PhysicsRigidConstraintPtr PhysicsModels::readConstraint(const PhysicsModelEntry& entry,
                                                               const pugi::xml_node& constraint)
{
    const pugi::xml_node common = constraint.child("technique_common");
    const pugi::xml_node limits = common.child("limits");
    const auto readOne = [&](const char* kind, const char* end)
    { return readLimit(m_document, limits.child(kind).child(end)); };
    const auto result = boost::make_shared<scene::PhysicsRigidConstraint>(
        getAttribute(constraint, "sid"), getAttribute(constraint, "name"),
        readBool(m_document, common.child("enabled"), true),
        readBool(m_document, common.child("interpenetrate"), false));
    result->setLinearlimits(readOne("linear", "min"), readOne("linear", "max"),
                            readOne("swing_cone_and_twist", "min"),
                            readOne("swing_cone_and_twist", "max"));
    result->setAttachment(readAttachment(entry, constraint.child("attachment")));
    result->setRefAttachment(readAttachment(entry, constraint.child("ref_attachment")));
    if (const pugi::xml_node spring = common.child("spring"))
    {
        m_document.warn(spring, "left out: a constraint of the scene has none");
    }
    return result;
}

/// Empty when there is no such element.
scene::PhysicsAttachmentPtr PhysicsModels::readAttachment(const PhysicsModelEntry& entry,
                                                          const pugi::xml_node& attachment)
{
    if (!attachment)
    {
        return scene::PhysicsAttachmentPtr();
    }
    const auto result = boost::make_shared<scene::PhysicsAttachment>(findBody(entry, attachment));
    const PhysicsFrame frame = readFrame(m_document, attachment);
    result->setRotation(frame.rotation);
    result->setTranslate(frame.translation);
    return result;
}

scene::PhysicsRigidBodyPtr PhysicsModels::findBody(const PhysicsModelEntry& entry,
                                                   const pugi::xml_node& attachment)
{
    const std::string name = getAttribute(attachment, "rigid_body");
    const bool isUrl = !name.empty() && name[0] == '#';
    const std::string path = isUrl ? name.substr(1) : name;
    const auto bySid = entry.bodies.find(getLastSid(path));
    if (bySid != entry.bodies.end())
    {
        return bySid->second;
    }
    if (isUrl)
    {
        const auto body = m_bodies.find(
            m_document.resolve(attachment, name, {"rigid_body", "node"}).internal_object());
        if (body != m_bodies.end())
        {
            return body->second;
        }
    }
    if (!name.empty())
    {
        m_document.warn(attachment,
                        quote(name) + " names no body of a model; it holds to the world");
    }
    return scene::PhysicsRigidBodyPtr();
}

std::string getLastSid(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}
} // namespace velmoran::examples::collada
