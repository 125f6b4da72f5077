#pragma once

#include "scene/Forward.h"

#include <cstddef>
#include <functional>

namespace velmoran::examples
{
/// The corners of a face: index records in a row.
struct MeshFace
{
    const unsigned int* records = nullptr;
    std::size_t width = 0; ///< of a record
    std::size_t corners = 0;
};

/// Whether the primitive is a list of triangles or of polygons, the kinds that have faces.
bool hasFaces(const scene::IMeshPrimitive& primitive);

/// Hands on each face of three or more corners whose records are all there, in order. Linear.
void visitFaces(const scene::IMeshPrimitive& primitive,
                const std::function<void(const MeshFace&)>& visit);

/// The triangles of a primitive, a polygon counted as the fan of triangles that it is.
std::size_t countTriangles(const scene::IMeshPrimitive& primitive);

/// The area of all faces of a primitive of `mesh`, in the mesh's own space. Triangles and plane
/// polygons have their own, other polygons that of the plane that fits them. Faces with indices
/// that lead nowhere have none. Linear.
double measureArea(const scene::Mesh& mesh, const scene::IMeshPrimitive& primitive);
} // namespace velmoran::examples
