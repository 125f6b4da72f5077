#pragma once

#include <ostream>
#include <string>

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

/// Writes a line that the user should know of, beside what the command reports.
inline void warn(const std::string& text, const Console& console)
{
    console.err << "scenetool: warning: " << text << '\n';
}
} // namespace velmoran::examples
