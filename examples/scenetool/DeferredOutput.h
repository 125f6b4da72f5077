#pragma once

#include "examples/scenetool/Console.h"

#include <sstream>

namespace velmoran::examples
{
/// Keeps what is written until its end, so that nothing comes between the line of
/// progress, which goes before. Hands everything on at once when it is not to keep.
class DeferredOutput
{
public:
    DeferredOutput(const Console& console, bool keeps)
        : m_target(console),
          m_console{keeps ? m_out : console.out, keeps ? m_err : console.err, console.outIsTerminal,
                    console.errIsTerminal}
    {
    }

    ~DeferredOutput()
    {
        m_target.out << m_out.str();
        m_target.err << m_err.str();
    }

    DeferredOutput(const DeferredOutput&) = delete;
    DeferredOutput& operator=(const DeferredOutput&) = delete;

    const Console& getConsole() const { return m_console; }

private:
    Console m_target;
    std::ostringstream m_out;
    std::ostringstream m_err;
    Console m_console;
};
} // namespace velmoran::examples
