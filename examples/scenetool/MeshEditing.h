#pragma once

#include "scene/Forward.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velmoran::examples
{
/// What is done to a mesh: it is refined, and then its normals are computed anew.
struct MeshEdits
{
    unsigned int subdivisions = 0;
    bool normals = false;
};

/// How much a primitive consists of.
struct PrimitiveSize
{
    std::string kind; ///< "triangles" or "polygons"
    std::string material;
    std::size_t triangles = 0; ///< polygons count as fans
    double area = 0.0;         ///< in units of the mesh
};

/// What became of a mesh.
struct MeshChange
{
    scene::MeshPtr mesh;
    std::string skinID; ///< of the controller whose skin was refined along; empty: none
    std::vector<PrimitiveSize> before;
    std::vector<PrimitiveSize> after;
    std::optional<double> subdivisionSeconds; ///< unset: not subdivided
    std::optional<double> normalsSeconds;     ///< unset: not computed
};

/// The triangles of all primitives.
std::size_t countTriangles(const std::vector<PrimitiveSize>& primitives);

/// Their area.
double sumArea(const std::vector<PrimitiveSize>& primitives);

/// Whether the library can edit it: not where it has polygons, which it neither refines nor
/// computes normals for.
bool canBeEdited(const scene::Mesh& mesh);

/// The controllers of the scene that skin this mesh, in their order.
std::vector<scene::ControllerPtr> findSkinsOf(const scene::SceneManager& scene,
                                              const scene::MeshPtr& mesh);

/// Edits a mesh of the scene's geometry library, with the first of its skins, and measures it
/// before and after. One that can't be edited is only measured.
MeshChange editMesh(const scene::SceneManager& scene, const scene::MeshPtr& mesh,
                    const MeshEdits& edits);
} // namespace velmoran::examples
