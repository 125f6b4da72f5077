#pragma once

#include "core/system/IClock.h"

namespace velmoran::core::system
{
/// The machine's clock, truncated to whole milliseconds.
///
/// It follows changes of the machine's time, so it may step back.
class VELMORAN_CORE_EXPORT MillisecClock : public IClock
{
public:
    /// Counts universal time when `universal` is true, local time otherwise.
    explicit MillisecClock(bool universal);

    boost::posix_time::ptime getTime() override;

private:
    const bool m_universal;
};
} // namespace velmoran::core::system
