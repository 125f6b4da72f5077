#include "examples/scenetool/ProgressBar.h"

#include <algorithm>
#include <utility>

namespace velmoran::examples
{
namespace
{
constexpr std::size_t WIDTH = 30;
const char* const WIPE_LINE = "\r\033[K";
} // namespace

ProgressBar::ProgressBar(std::ostream* terminal, std::string task)
    : m_terminal(terminal), m_task(std::move(task))
{
}

ProgressBar::~ProgressBar()
{
    if (m_terminal != nullptr)
    {
        *m_terminal << WIPE_LINE << std::flush;
    }
}

void ProgressBar::show(double done, const std::string& detail)
{
    if (m_terminal == nullptr)
    {
        return;
    }
    const double filled = std::clamp(done, 0.0, 1.0) * static_cast<double>(WIDTH);
    std::string bar(static_cast<std::size_t>(filled), '#');
    bar.resize(WIDTH, '-');
    *m_terminal << WIPE_LINE << m_task << "  [" << bar << "]  " << detail << std::flush;
}
} // namespace velmoran::examples
