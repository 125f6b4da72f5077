#pragma once

#include "core/Export.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>

namespace velmoran::core::system
{
/// A source of time. Implement it to drive a scene by another time than the
/// machine's, e.g. in tests.
///
/// Threads: an implementation must answer from any thread.
class VELMORAN_CORE_EXPORT IClock
{
public:
    /// The time now.
    virtual boost::posix_time::ptime getTime() = 0;

    virtual ~IClock();
};
} // namespace velmoran::core::system
