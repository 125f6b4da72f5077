#pragma once

#include <ostream>

namespace velmoran::examples
{
/// Where a command writes.
struct Console
{
    std::ostream& out;
    std::ostream& err;
    bool outIsTerminal = false;
    bool errIsTerminal = false;
};
} // namespace velmoran::examples
