#pragma once

#include "core/Forward.h"
#include "examples/collada/ColladaReader.h"
#include "examples/scenetool/Console.h"
#include "scene/Forward.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace velmoran::examples
{
/// What ends a command with exit status 1; the text is one line for the user.
class CommandError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A scene and the file that it was read from.
struct LoadedScene
{
    std::string fileName;
    scene::SceneManagerPtr scene;
    std::vector<std::string> warnings; ///< of the reader
};

/// Reads a COLLADA document into a new scene with `eventManager`, which may be empty.
/// Throws `CommandError` when the document can't be read.
LoadedScene loadScene(const std::string& fileName, const core::event::EventManagerPtr& eventManager,
                      const ReadOptions& options = {});

/// Reads a document into a new scene with an event manager of its own, showing progress,
/// and writes the warnings. Throws as `loadScene`.
LoadedScene openScene(const std::string& fileName, const Console& console,
                      const ReadOptions& options = {});

/// Warns when `other` has another up axis or unit than `base`: the library takes numbers as
/// they are.
void warnAboutUnits(const LoadedScene& base, const LoadedScene& other, const Console& console);

/// Writes the warnings of `loaded`, the first few of many.
void printWarnings(const LoadedScene& loaded, std::ostream& err);
} // namespace velmoran::examples
