// The house has floors: a folder includes only what stands below it. A link that
// cannot be avoided stands in the list of exceptions, as a single include.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace
{
namespace fs = std::filesystem;

const std::map<std::string, int> FLOOR_OF_FOLDER = {
    {"core/event", 0},     {"core/logger", 0},    {"core/system", 0},   {"core/utils", 0},
    {"scene/material", 0}, {"scene/geometry", 1}, {"scene/graph", 2},   {"scene/physics", 2},
    {"scene/deform", 3},   {"scene/spatial", 3},  {"scene/manager", 4}, {"scene/animation", 5}};

const std::set<std::string> EXCEPTIONS = {
    // A triangle's ray.
    "scene/geometry/Triangle.cpp includes scene/spatial/Ray.h",
    // The skin that subdivision carries along.
    "scene/geometry/Subdivision.cpp includes scene/deform/SkinRefinement.h",
    // A material may be set on the geometry of a controller instance.
    "scene/graph/NodeContents.cpp includes scene/deform/InstanceController.h",
    // Installing animations makes the manager that plays them.
    "scene/manager/SceneLibraries.cpp includes scene/animation/Animation.h",
    "scene/manager/SceneLibraries.cpp includes scene/animation/AnimationManager.h",
};

/// The folder of a path, e.g. "core/event"; "" for a file directly below core/ or scene/.
std::string folderOf(const std::string& path)
{
    const std::size_t top = path.find('/');
    const std::size_t folder = path.find('/', top + 1);
    return folder == std::string::npos ? "" : path.substr(0, folder);
}

bool isUpward(const std::string& from, const std::string& to)
{
    const std::string source = folderOf(from);
    const std::string target = folderOf(to);
    const bool coreUsesScene = from.compare(0, 5, "core/") == 0 && to.compare(0, 6, "scene/") == 0;
    if (target.empty() || source.empty() || coreUsesScene)
    {
        return coreUsesScene;
    }
    const bool besides = FLOOR_OF_FOLDER.at(source) == FLOOR_OF_FOLDER.at(target) &&
                         source != target && source.compare(0, 5, "core/") != 0 &&
                         target.compare(0, 5, "core/") != 0;
    return besides || FLOOR_OF_FOLDER.at(source) < FLOOR_OF_FOLDER.at(target);
}

std::set<std::string> upwardIncludes()
{
    const fs::path root(VELMORAN_SOURCE_DIR);
    const std::regex include("\\s*#include\\s+\"(.+)\".*");
    std::set<std::string> found;
    for (const char* const top : {"core", "scene"})
    {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / top))
        {
            const std::string extension = entry.path().extension().string();
            if (extension != ".h" && extension != ".cpp")
            {
                continue;
            }
            const std::string from = fs::relative(entry.path(), root).generic_string();
            std::ifstream file(entry.path());
            for (std::string line; std::getline(file, line);)
            {
                std::smatch quoted;
                if (std::regex_match(line, quoted, include) && isUpward(from, quoted[1]))
                {
                    found.insert(from + " includes " + quoted.str(1));
                }
            }
        }
    }
    return found;
}
} // namespace

TEST(Floors, NoFileIncludesAFloorAboveItsOwnBeyondTheExceptions)
{
    EXPECT_EQ(upwardIncludes(), EXCEPTIONS);
}
