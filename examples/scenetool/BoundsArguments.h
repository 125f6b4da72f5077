#pragma once

#include "examples/scenetool/Arguments.h"
#include "examples/scenetool/BoundsCommand.h"

namespace velmoran::examples
{
/// Adds the command "bounds", which fills `options`.
void addBounds(CLI::App& app, BoundsOptions& options);
} // namespace velmoran::examples
