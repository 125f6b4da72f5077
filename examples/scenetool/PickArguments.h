#pragma once

#include "examples/scenetool/Arguments.h"
#include "examples/scenetool/PickCommand.h"

namespace velmoran::examples
{
/// Adds the command "pick", which fills `options`.
void addPick(CLI::App& app, PickOptions& options);
} // namespace velmoran::examples
