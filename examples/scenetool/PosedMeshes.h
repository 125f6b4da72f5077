#pragma once

#include "examples/scenetool/MeshInputs.h"
#include "examples/scenetool/Skinning.h"

#include <functional>

namespace velmoran::examples
{
/// A mesh as it stands in a scene.
struct PosedMesh
{
    scene::NodePtr node;
    scene::InstanceGeometryPtr instance;
    scene::MeshPtr mesh;
    Eigen::Matrix4d matrix;            ///< takes positions to world space
    std::optional<SkinInstance> skin;  ///< when it is posed by its joints instead
    scene::StreamPtr skinnedPositions; ///< then: the positions in world space
    bool lacksJoints = false;          ///< has a skin, but stands as it was bound
};

/// The inputs of a primitive of the mesh, with the skinned positions in the place of its own.
/// They live as long as the mesh and `posed`.
MeshInputs findMeshInputs(const PosedMesh& posed, const scene::IMeshPrimitive& primitive);

/// Hands on every mesh that a node of the scene instances, in its order. Skins are posed as their
/// joints stand; one that can't be stands as it was bound.
void visitMeshes(const scene::SceneManagerPtr& scene,
                 const std::function<void(const PosedMesh&)>& visit);
} // namespace velmoran::examples
