#pragma once

#include "examples/scenetool/CommandLine.h"

#include <sstream>
#include <string>
#include <vector>

// Runs the program in this process.
namespace velmoran::examples::test
{
struct Outcome
{
    int status;
    std::string out;
    std::string err;
};

inline Outcome run(std::vector<const char*> arguments, bool errIsTerminal = false)
{
    arguments.insert(arguments.begin(), "scenetool");
    std::ostringstream out;
    std::ostringstream err;
    const int status = runSceneTool(static_cast<int>(arguments.size()), arguments.data(),
                                    {out, err, false, errIsTerminal});
    return {status, out.str(), err.str()};
}
} // namespace velmoran::examples::test
