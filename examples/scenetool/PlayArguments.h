#pragma once

#include "examples/scenetool/Arguments.h"
#include "examples/scenetool/PlayCommand.h"

namespace velmoran::examples
{
/// Adds the command "play", which fills `options`.
void addPlay(CLI::App& app, PlayOptions& options);
} // namespace velmoran::examples
