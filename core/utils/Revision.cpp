#include "core/utils/Revision.h"

namespace velmoran::core::utils
{
namespace
{
// Relaxed throughout: whoever changes and whoever reads the objects are kept apart by
// what guards those.
std::atomic<std::uint64_t> s_watchedChanges{0};
} // namespace

std::uint64_t Revision::getWatchedChanges()
{
    return s_watchedChanges.load(std::memory_order_relaxed);
}

void Revision::noteWatchedChange()
{
    s_watchedChanges.fetch_add(1, std::memory_order_relaxed);
}
} // namespace velmoran::core::utils
