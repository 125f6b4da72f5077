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

inline Outcome run(const std::vector<std::string>& arguments, bool errIsTerminal = false)
{
    std::vector<const char*> words = {"scenetool"};
    for (const std::string& argument : arguments)
    {
        words.push_back(argument.c_str());
    }
    std::ostringstream out;
    std::ostringstream err;
    const int status = runSceneTool(static_cast<int>(words.size()), words.data(),
                                    {out, err, false, errIsTerminal});
    return {status, out.str(), err.str()};
}
} // namespace velmoran::examples::test
