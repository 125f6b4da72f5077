#include "examples/scenetool/PhysicsFacts.h"

#include "examples/scenetool/Text.h"
#include "scene/manager/SceneManager.h"
#include "scene/physics/PhysicsInstanceModel.h"
#include "scene/physics/PhysicsMaterial.h"
#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsRigidBody.h"
#include "scene/physics/PhysicsScene.h"

namespace velmoran::examples
{
namespace
{
void countModels(const std::vector<scene::PhysicsModelPtr>& models, Json& counts)
{
    std::size_t bodies = 0;
    std::size_t dynamic = 0;
    std::size_t shapes = 0;
    std::size_t constraints = 0;
    for (const scene::PhysicsModelPtr& model : models)
    {
        for (const scene::PhysicsRigidBodyPtr& body : model->getRigidBodyLibrary())
        {
            ++bodies;
            dynamic += body->isDynamic() ? 1U : 0U;
            shapes += body->getShapeCount();
        }
        constraints += model->getRigidConstraintLibrary().size();
    }
    counts["physics_models"] = models.size();
    counts["rigid_bodies"] = bodies;
    counts["dynamic_rigid_bodies"] = dynamic;
    counts["physics_shapes"] = shapes;
    counts["rigid_constraints"] = constraints;
}

void countScenes(const std::vector<scene::PhysicsScenePtr>& scenes, Json& counts)
{
    std::size_t models = 0;
    std::size_t bodies = 0;
    std::size_t constraints = 0;
    for (const scene::PhysicsScenePtr& scene : scenes)
    {
        models += scene->getInstancedModels().size();
        for (const scene::PhysicsInstanceModelPtr& model : scene->getInstancedModels())
        {
            bodies += model->getInstancedRigidBodies().size();
            constraints += model->getInstancedRigidConstraint().size();
        }
    }
    counts["physics_scenes"] = scenes.size();
    counts["instance_physics_model"] = models;
    counts["instance_rigid_body"] = bodies;
    counts["instance_rigid_constraint"] = constraints;
}

template <typename Items>
Json listIDs(const Items& items)
{
    Json ids = Json::array();
    for (const auto& item : items)
    {
        ids.push_back(item->getID());
    }
    return ids;
}
} // namespace

void countPhysics(const scene::SceneManagerPtr& scene, Json& counts)
{
    counts["physics_materials"] = scene->getPhysicsMaterialLibrary().size();
    countModels(scene->getPhysicsModelLibrary(), counts);
    countScenes(scene->getPhysicsSceneLibrary(), counts);
    counts["instance_physics_scene"] = scene->getInstancedPhysicsScenes().size();
}

void collectPhysicsIDs(const scene::SceneManagerPtr& scene, Json& ids)
{
    ids["physics_materials"] = listIDs(scene->getPhysicsMaterialLibrary());
    ids["physics_models"] = listIDs(scene->getPhysicsModelLibrary());
    ids["physics_scenes"] = listIDs(scene->getPhysicsSceneLibrary());
}

std::string describePhysics(const Json& counts)
{
    const auto text = [&counts](const char* key, const char* singular, const char* plural)
    { return countText(counts[key], singular, plural); };
    if (counts["physics_materials"] == 0 && counts["physics_models"] == 0 &&
        counts["physics_scenes"] == 0)
    {
        return "";
    }
    return text("physics_materials", "material", "materials") + "; " +
           text("physics_models", "model", "models") + " of " +
           text("rigid_bodies", "body", "bodies") + " (" + counts["dynamic_rigid_bodies"].dump() +
           " dynamic), " + text("physics_shapes", "shape", "shapes") + ", " +
           text("rigid_constraints", "constraint", "constraints") + "; " +
           text("physics_scenes", "scene", "scenes") + " of " +
           text("instance_rigid_body", "body", "bodies");
}
} // namespace velmoran::examples
