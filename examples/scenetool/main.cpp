#include "core/logger/Logger.h"
#include "examples/scenetool/CommandLine.h"

#include <unistd.h>

#include <csignal>
#include <iostream>

int main(int argc, char** argv)
{
    // The commands say themselves what happens.
    velmoran::core::logger::Logger::active = false;
    // A file that grows too large is then an error of writing, which is reported.
    std::signal(SIGXFSZ, SIG_IGN);
    std::ios::sync_with_stdio(false);
    return velmoran::examples::runSceneTool(
        argc, argv,
        {std::cout, std::cerr, ::isatty(STDOUT_FILENO) == 1, ::isatty(STDERR_FILENO) == 1});
}
