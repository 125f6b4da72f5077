#pragma once

#include "core/event/EventBase.h"

#include <cstddef>
#include <map>
#include <mutex>
#include <ostream>
#include <string>

namespace velmoran::examples
{
/// Hears all events of a scene: counts them, and writes each on a line of its own if
/// it has somewhere to write.
class EventPrinter : public core::event::EventBase
{
public:
    /// Listens from now on. `out` may be null; `isTerminal` lets long data be cut.
    EventPrinter(const core::event::EventManagerPtr& eventManager, std::ostream* out,
                 bool isTerminal);

    ~EventPrinter() override;

    void handleEvent(core::event::Event event) override;

    /// How many of each event were heard so far, by name.
    std::map<std::string, std::size_t> getCounts() const;

    /// "3 SceneUpdate, 1 SyncScene" or "none".
    std::string summary() const;

private:
    std::ostream* const m_out;
    const bool m_isTerminal;
    mutable std::mutex m_mutex; ///< events also come from the scene's worker
    std::map<std::string, std::size_t> m_counts;
};
} // namespace velmoran::examples
