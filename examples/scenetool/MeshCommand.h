#pragma once

#include "examples/scenetool/Console.h"
#include "examples/scenetool/MeshEditing.h"
#include "examples/scenetool/SceneLoader.h"

#include <string>

namespace velmoran::examples
{
struct MeshOptions
{
    std::string fileName;
    MeshEdits edits;
    bool asJson = false;
    std::string objFile; ///< empty: none is written
    ReadOptions reading;
};

/// Refines the meshes of a document, computes their normals anew, and tells of their triangles
/// and areas before and after. Throws `CommandError` when a file can't be read or written, the
/// document has no mesh, or the result would be too large.
void runMesh(const MeshOptions& options, const Console& console);
} // namespace velmoran::examples
