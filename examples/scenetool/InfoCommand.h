#pragma once

#include "examples/collada/ColladaReader.h"
#include "examples/scenetool/Console.h"

#include <string>

namespace velmoran::examples
{
struct InfoOptions
{
    std::string fileName;
    bool asJson = false;
    ReadOptions reading;
};

/// Writes what the document holds. Throws `CommandError` when it can't be read.
void runInfo(const InfoOptions& options, const Console& console);
} // namespace velmoran::examples
