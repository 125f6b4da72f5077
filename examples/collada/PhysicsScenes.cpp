#include "examples/collada/PhysicsScenes.h"

#include "examples/collada/Values.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"
#include "scene/physics/PhysicsInstanceModel.h"
#include "scene/physics/PhysicsInstanceRigidBody.h"
#include "scene/physics/PhysicsInstanceRigidConstraint.h"
#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsScene.h"

#include <boost/make_shared.hpp>

namespace velmoran::examples::collada
{
namespace
{
std::string getNodeID(const Document& document, const pugi::xml_node& element,
                      const char* attribute)
{
    return getAttribute(document.resolveAttribute(element, attribute, {"node"}), "id");
}

template <typename Item>
Item findBySid(const std::unordered_map<std::string, Item>& items, const std::string& path)
{
    const auto found = items.find(getLastSid(path));
    return found == items.end() ? Item() : found->second;
}

void readBodies(Document& document, const PhysicsModelEntry& entry, PhysicsInstanceDraft& draft)
{
    for (const pugi::xml_node& element : draft.element.children("instance_rigid_body"))
    {
        const std::string name = getAttribute(element, "body");
        const std::string targetID = getNodeID(document, element, "target");
        const scene::PhysicsRigidBodyPtr body = findBySid(entry.bodies, name);
        if (!body)
        {
            document.warn(element, "left out: " + quote(name) + " names no body of its model");
            continue;
        }
        if (element.child("technique_common").first_child())
        {
            document.warn(element, "values of its own are left out: it has those of its body");
        }
        draft.bodies.push_back({element, body, targetID});
    }
}

void readConstraints(Document& document, const PhysicsModelEntry& entry,
                     PhysicsInstanceDraft& draft)
{
    for (const pugi::xml_node& element : draft.element.children("instance_rigid_constraint"))
    {
        const std::string name = getAttribute(element, "constraint");
        const scene::PhysicsRigidConstraintPtr constraint = findBySid(entry.constraints, name);
        if (!constraint)
        {
            document.warn(element,
                          "left out: " + quote(name) + " names no constraint of its model");
            continue;
        }
        draft.constraints.push_back(boost::make_shared<scene::PhysicsInstanceRigidConstraint>(
            constraint, getAttribute(element, "sid"), getAttribute(element, "name")));
    }
}

void warnAboutForces(Document& document, const pugi::xml_node& parent)
{
    if (const pugi::xml_node force = parent.child("instance_force_field"))
    {
        document.warn(force, "left out: the scene has no force fields");
    }
}

PhysicsInstanceDraft readInstance(Document& document, const PhysicsModels& models,
                                  const pugi::xml_node& element)
{
    PhysicsInstanceDraft draft;
    draft.element = element;
    if (element.attribute("parent"))
    {
        draft.parentID = getNodeID(document, element, "parent");
    }
    const pugi::xml_node model = document.resolveAttribute(element, "url", {"physics_model"});
    const PhysicsModelEntry* const entry = models.getEntry(model);
    if (entry == nullptr)
    {
        document.fail(element, "refers to a physics model outside all libraries");
    }
    draft.model = entry->model;
    readBodies(document, *entry, draft);
    readConstraints(document, *entry, draft);
    warnAboutForces(document, element);
    return draft;
}

/// The node with this ID; empty, with a warning, when the scene has none.
scene::NodePtr findNode(Document& document, const scene::SceneManager& scene, const std::string& id,
                        const pugi::xml_node& element)
{
    const scene::NodePtr node = scene.getNodeByID(id);
    if (!node)
    {
        document.warn(element, "the node " + quote(id) + " is not in the scene");
    }
    return node;
}

scene::PhysicsInstanceModelPtr makeInstance(Document& document, const scene::SceneManager& scene,
                                            const PhysicsInstanceDraft& draft)
{
    const scene::NodePtr parent = draft.parentID.empty()
                                      ? scene::NodePtr()
                                      : findNode(document, scene, draft.parentID, draft.element);
    const auto instance = boost::make_shared<scene::PhysicsInstanceModel>(draft.model, parent);
    std::vector<scene::PhysicsInstanceRigidBodyPtr> bodies;
    for (const PhysicsInstanceDraft::Body& body : draft.bodies)
    {
        bodies.push_back(boost::make_shared<scene::PhysicsInstanceRigidBody>(
            body.body, findNode(document, scene, body.targetID, body.element)));
    }
    instance->setInstancedRigidBodies(bodies);
    instance->setInstancedRigidConstraints(draft.constraints);
    return instance;
}
} // namespace

PhysicsScenes::PhysicsScenes(Document& document, const PhysicsModels& models)
{
    for (const pugi::xml_node& element :
         document.getIdentified("library_physics_scenes", "physics_scene"))
    {
        readScene(document, models, element);
    }
    readInstanced(document);
}

void PhysicsScenes::readScene(Document& document, const PhysicsModels& models,
                              const pugi::xml_node& element)
{
    m_places.emplace(element.internal_object(), m_entries.size());
    Entry& entry = m_entries.emplace_back();
    entry.scene = boost::make_shared<scene::PhysicsScene>(getAttribute(element, "id"),
                                                          getAttribute(element, "name"));
    const pugi::xml_node common = element.child("technique_common");
    if (const pugi::xml_node gravity = common.child("gravity"))
    {
        const std::vector<float> values = readFloats(document, gravity, 3);
        entry.scene->setGravity({values[0], values[1], values[2]});
    }
    entry.scene->setTimeStep(
        readFloat(document, common.child("time_step"), entry.scene->getTimeStep()));
    for (const pugi::xml_node& model : element.children("instance_physics_model"))
    {
        entry.models.push_back(readInstance(document, models, model));
    }
    warnAboutForces(document, element);
}

void PhysicsScenes::readInstanced(const Document& document)
{
    for (const pugi::xml_node& instance :
         document.getRoot().child("scene").children("instance_physics_scene"))
    {
        const auto place = m_places.find(
            document.resolveAttribute(instance, "url", {"physics_scene"}).internal_object());
        if (place == m_places.end())
        {
            document.fail(instance, "refers to a physics scene outside all libraries");
        }
        m_instanced.push_back(m_entries[place->second].scene);
    }
}

void PhysicsScenes::install(Document& document, scene::SceneManager& scene) const
{
    std::vector<scene::PhysicsScenePtr> scenes;
    for (const Entry& entry : m_entries)
    {
        std::vector<scene::PhysicsInstanceModelPtr> models;
        for (const PhysicsInstanceDraft& draft : entry.models)
        {
            models.push_back(makeInstance(document, scene, draft));
        }
        entry.scene->setInstancedModels(models);
        scenes.push_back(entry.scene);
    }
    scene.setPhysicsSceneLibrary(scenes);
    scene.setInstancedPhysicsScenes(m_instanced);
}
} // namespace velmoran::examples::collada
