#pragma once

#include "examples/scenetool/Console.h"
#include "scene/Forward.h"

#include <string>

namespace velmoran::examples
{
/// Writes the scene as a Wavefront OBJ file and says what was written and what had to be
/// left out. Throws `CommandError` as `writeObj` does.
void writeObjFile(const scene::SceneManagerPtr& scene, const std::string& fileName,
                  const Console& console);
} // namespace velmoran::examples
