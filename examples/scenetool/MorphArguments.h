#pragma once

#include "examples/scenetool/Arguments.h"
#include "examples/scenetool/MorphCommand.h"

namespace velmoran::examples
{
/// Adds the command "morph", which fills `options`.
void addMorph(CLI::App& app, MorphOptions& options);
} // namespace velmoran::examples
