#pragma once

#include "core/utils/Revision.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace velmoran::scene
{
/// The state of some objects at one moment: whether any of them has changed since.
///
/// Constant as long as no watched object of the process changes. Objects are compared in
/// the order of inclusion up to the first that has changed: one that may have gone when
/// another changes stands behind that.
class RevisionStamp
{
public:
    void include(const core::utils::Revision& revision)
    {
        m_revisions.emplace_back(&revision, revision.watch());
    }

    /// True for a stamp of nothing.
    bool isCurrent() const
    {
        const std::uint64_t changes = core::utils::Revision::getWatchedChanges();
        if (changes != m_changes)
        {
            const bool same = std::all_of(m_revisions.begin(), m_revisions.end(),
                                          [](const auto& entry)
                                          { return entry.first->getCount() == entry.second; });
            if (!same)
            {
                return false;
            }
            m_changes = changes;
        }
        return true;
    }

private:
    std::vector<std::pair<const core::utils::Revision*, std::uint64_t>> m_revisions;

    /// The watched changes of the process when nothing had changed; before anything is
    /// included, so that nothing gets lost in between.
    mutable std::uint64_t m_changes = core::utils::Revision::getWatchedChanges();
};
} // namespace velmoran::scene
