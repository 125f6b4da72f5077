#include "examples/collada/ColladaReader.h"

#include "examples/collada/SceneBuilder.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace velmoran::examples
{
namespace
{
ReadResult makeError(const std::string& message)
{
    ReadResult result;
    result.error = message;
    return result;
}

/// Also reads what has no size in advance, such as a pipe.
bool readAll(const std::string& fileName, std::string& text)
{
    std::ifstream file(fileName, std::ios::binary);
    std::array<char, 65536> block;
    while (file.read(block.data(), block.size()) || file.gcount() > 0)
    {
        text.append(block.data(), static_cast<std::size_t>(file.gcount()));
    }
    return file.eof();
}
} // namespace

ReadResult ColladaReader::readFile(const std::string& fileName, const scene::SceneManagerPtr& scene,
                                   const ReadOptions& options)
{
    std::string text;
    errno = 0;
    if (!readAll(fileName, text))
    {
        return makeError(fileName +
                         ": the file can't be read: " + std::generic_category().message(errno));
    }
    return readText(text, fileName, scene, options);
}

ReadResult ColladaReader::readText(const std::string& text, const std::string& displayName,
                                   const scene::SceneManagerPtr& scene, const ReadOptions& options)
{
    if (!scene)
    {
        return makeError(displayName + ": there is no scene to read it into");
    }
    try
    {
        collada::Document document(text, displayName);
        const collada::Content content(document, options);
        collada::buildScene(document, content, scene);
        ReadResult result;
        result.ok = true;
        result.warnings = document.getWarnings();
        return result;
    }
    catch (const collada::ReadError& error)
    {
        return makeError(error.what());
    }
}
} // namespace velmoran::examples
