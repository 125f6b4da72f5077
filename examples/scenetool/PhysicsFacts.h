#pragma once

#include "examples/scenetool/SceneFacts.h"

#include <string>

namespace velmoran::examples
{
/// Adds to "counts": "physics_materials", "physics_models", "rigid_bodies",
/// "dynamic_rigid_bodies", "physics_shapes", "rigid_constraints" (of all models),
/// "physics_scenes", "instance_physics_scene", "instance_physics_model", "instance_rigid_body"
/// and "instance_rigid_constraint" (of all physics scenes).
void countPhysics(const scene::SceneManagerPtr& scene, Json& counts);

/// Adds to "ids": "physics_materials", "physics_models" and "physics_scenes".
void collectPhysicsIDs(const scene::SceneManagerPtr& scene, Json& ids);

/// "2 materials; 1 model of 3 bodies (2 dynamic), ..." for people; empty when these
/// counts are all zero.
std::string describePhysics(const Json& counts);
} // namespace velmoran::examples
