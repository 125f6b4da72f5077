#pragma once

#include "examples/scenetool/Console.h"
#include "examples/scenetool/SceneLoader.h"

#include <string>

namespace velmoran::examples
{
struct BoundsOptions
{
    std::string fileName;
    bool asJson = false;
    ReadOptions reading;
};

/// Tells the bounds of a document's geometries, of its nodes and of the scene. Throws
/// `CommandError` when it can't be read.
void runBounds(const BoundsOptions& options, const Console& console);
} // namespace velmoran::examples
