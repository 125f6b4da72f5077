#pragma once

#include "examples/collada/Meshes.h"
#include "examples/collada/PhysicsMaterials.h"

namespace velmoran::examples::collada
{
/// Reads a `<rigid_body>` with its shapes.
///
/// Its ID is the SID that instances call it by; its ID in the document when it has none. It
/// is dynamic unless it says otherwise. A mesh as a shape binds no materials, what is given
/// by measures becomes an `AnalyticShape`. Left out with a warning: frames of mass, inertia,
/// and meshes that were left out. Fails at references to what is not there.
scene::PhysicsRigidBodyPtr readRigidBody(Document& document, const Meshes& meshes,
                                         PhysicsMaterials& materials, const pugi::xml_node& body);
} // namespace velmoran::examples::collada
