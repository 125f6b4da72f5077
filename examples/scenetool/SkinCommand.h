#pragma once

#include "examples/scenetool/Console.h"

#include <optional>
#include <string>

namespace velmoran::examples
{
struct SkinOptions
{
    std::string fileName;
    std::optional<double> time; ///< seconds; unset: as the document has it
    bool asJson = false;
    std::string objFile; ///< empty: none is written
    std::string pngFile; ///< empty: none is written
};

/// Skins all skinned meshes of a document, at rest or posed by its animations, and tells of
/// their vertices. Throws `CommandError` when a file can't be read or written, the document has
/// no skin in its scene, or nothing that plays at that time.
void runSkin(const SkinOptions& options, const Console& console);
} // namespace velmoran::examples
