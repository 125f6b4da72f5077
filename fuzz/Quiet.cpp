// No logs and no standard output while the fuzzers run: only their own reports count.

#include "core/logger/Logger.h"
#include "fuzz/Input.h"

#include <iostream>

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    velmoran::core::logger::Logger::active = false;
    std::cout.setstate(std::ios::failbit);
    return 0;
}
