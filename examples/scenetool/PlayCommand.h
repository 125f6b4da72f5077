#pragma once

#include "examples/scenetool/Console.h"

#include <optional>
#include <string>
#include <vector>

namespace velmoran::examples
{
/// Times are seconds.
struct PlayOptions
{
    std::string fileName;
    std::optional<double> from;       ///< the start when unset
    std::optional<double> to;         ///< the end when unset
    std::optional<double> step;       ///< a quarter of the range when unset
    std::vector<std::string> nodeIDs; ///< empty: all that are animated
    std::optional<double> live;       ///< play on the worker for so long instead
    bool asJson = false;
};

/// Plays all animations of a document together: writes the world matrices of nodes time
/// by time, or lets the scene's worker play and counts the events. Throws `CommandError`
/// when the document can't be read or has nothing to play.
void runPlay(const PlayOptions& options, const Console& console);
} // namespace velmoran::examples
