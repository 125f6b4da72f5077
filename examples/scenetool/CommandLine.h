#pragma once

#include "examples/scenetool/Console.h"

namespace velmoran::examples
{
/// Runs the program and returns its exit status: 0, 1 after bad input (with a line on
/// `console.err`), 2 after wrong usage.
int runSceneTool(int argc, const char* const* argv, const Console& console);
} // namespace velmoran::examples
