#pragma once

#include "examples/scenetool/Console.h"

#include <string>
#include <vector>

namespace velmoran::examples
{
struct MergeOptions
{
    std::string base;
    std::vector<std::string> files;
    int flags = 0;
    std::string parentID; ///< empty: the root
    bool printsEvents = false;
    std::string objFile; ///< empty: none is written
};

/// Reads all documents, merges them one after the other into the base and reports
/// what happened. Throws `CommandError`, with nothing merged, when one can't be read.
void runMerge(const MergeOptions& options, const Console& console);
} // namespace velmoran::examples
