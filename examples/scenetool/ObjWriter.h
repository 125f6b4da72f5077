#pragma once

#include "scene/Forward.h"

#include <cstddef>
#include <string>

namespace velmoran::examples
{
/// What was written.
struct ObjResult
{
    std::size_t points = 0;
    std::size_t triangles = 0;
    std::size_t polygons = 0;          ///< faces of more corners
    std::size_t skippedFaces = 0;      ///< with indices that lead nowhere
    std::size_t skippedPrimitives = 0; ///< that have no faces
    std::size_t unposedSkins = 0;      ///< written as they were bound: joints or lists are missing
    std::string materialFile;
};

/// Writes all triangles and polygons of the scene in world space as a Wavefront OBJ file, and their
/// materials as an MTL file beside it.
///
/// Every geometry instance of every node is written; one with a skin is posed as its joints
/// stand. Each node and material symbol is a group. Normals turn with the inverse transpose
/// of the matrix that moves their corner, mirroring matrices turn the faces around. Of several
/// texture coordinate sets the first one is taken. A material is its diffuse colour, or grey
/// without one.
///
/// Throws `CommandError` when a file can't be written; neither is left half-written.
ObjResult writeObj(const scene::SceneManagerPtr& scene, const std::string& fileName);
} // namespace velmoran::examples
