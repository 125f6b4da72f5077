#pragma once

#include "examples/scenetool/Arguments.h"
#include "examples/scenetool/KeyCommand.h"

namespace velmoran::examples
{
/// Adds the command "key", which fills `options`.
void addKey(CLI::App& app, KeyOptions& options);
} // namespace velmoran::examples
