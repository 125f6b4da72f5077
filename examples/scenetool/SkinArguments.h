#pragma once

#include "examples/scenetool/Arguments.h"
#include "examples/scenetool/SkinCommand.h"

namespace velmoran::examples
{
/// Adds the command "skin", which fills `options`.
void addSkin(CLI::App& app, SkinOptions& options);
} // namespace velmoran::examples
