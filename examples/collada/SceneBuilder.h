#pragma once

#include "examples/collada/Animations.h"
#include "examples/collada/Asset.h"
#include "examples/collada/Controllers.h"
#include "examples/collada/Materials.h"
#include "examples/collada/Meshes.h"
#include "examples/collada/NodeDrafts.h"
#include "examples/collada/Optics.h"
#include "examples/collada/PhysicsScenes.h"

namespace velmoran::examples::collada
{
/// All that was read of a document, checked.
struct Content
{
    Content(Document& document, const ReadOptions& options);

    Asset asset;
    Sources sources;
    Meshes meshes; ///< before those who hold meshes, so that it goes after them
    Materials materials;
    Optics optics;
    Controllers controllers;
    NodeDrafts nodes;
    Animations animations;
    PhysicsMaterials physicsMaterials;
    PhysicsModels physicsModels;
    PhysicsScenes physicsScenes;
};

/// Puts the content into a scene; nothing here can fail, but for warnings.
///
/// The libraries, the root and the geometry manager take the place of the scene's, but
/// the default effect and material stay in front; camera instances are added. The root is in the
/// scene before its nodes are added, parents before children, so that listeners find what they hear
/// of.
void buildScene(Document& document, const Content& content, const scene::SceneManagerPtr& scene);
} // namespace velmoran::examples::collada
