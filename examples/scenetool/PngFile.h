#pragma once

#include "examples/scenetool/Console.h"
#include "examples/scenetool/Picture.h"

#include <string>

namespace velmoran::examples
{
/// Draws the picture into a PNG file and says so. Throws `CommandError` when there is nothing to
/// see or the file can't be written; it is not left half-written.
void writePngFile(const Picture& picture, const std::string& fileName, const Console& console);
} // namespace velmoran::examples
