#pragma once

#include "examples/scenetool/Arguments.h"
#include "examples/scenetool/MeshCommand.h"

namespace velmoran::examples
{
/// Adds the command "mesh", which fills `options`.
void addMesh(CLI::App& app, MeshOptions& options);
} // namespace velmoran::examples
