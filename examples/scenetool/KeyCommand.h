#pragma once

#include "examples/scenetool/Console.h"
#include "examples/scenetool/PoseKeyer.h"

#include <optional>
#include <string>
#include <vector>

namespace velmoran::examples
{
struct KeyOptions
{
    std::string fileName;
    std::vector<KeyPose> poses; ///< at least one
    std::string objFile;        ///< empty: none is written
    std::optional<double> live; ///< seconds to play on the worker
};

/// Poses the scene of a document, keys the poses into an animation of their own, and
/// says what was keyed and whether it plays back. Throws `CommandError` when a file can't
/// be read or written, or a node is missing or can't be keyed.
void runKey(const KeyOptions& options, const Console& console);
} // namespace velmoran::examples
