#pragma once

#include "examples/scenetool/Console.h"

#include <cstddef>
#include <string>
#include <vector>

namespace velmoran::examples
{
struct MorphOptions
{
    std::string avatar;
    std::string target;
    double ratio = 0.0;    ///< from 0, the target's shape, to 1, the avatar's own
    std::size_t steps = 1; ///< models; more than one: from 0 to the ratio
    std::string objFile;   ///< empty: none is written
    std::string pngFile;   ///< empty: none is written
};

/// The ratios of the models, evenly spaced.
std::vector<double> getMorphRatios(const MorphOptions& options);

/// The names of the OBJ files, by model: of several with a number from 1 on in front of the
/// extension, all of the same length.
std::vector<std::string> getObjFiles(const MorphOptions& options);

/// Morphs an avatar toward another one, anew for each model, and tells what has moved. Throws
/// `CommandError` when a file can't be read or written and when the scene reports that it can't
/// morph.
void runMorph(const MorphOptions& options, const Console& console);
} // namespace velmoran::examples
