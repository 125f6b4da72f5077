#pragma once

#include "bench/EventCases.h"
#include "core/event/EventBase.h"
#include "core/event/EventManager.h"

namespace velmoran::bench
{
/// Listens to all heard types with handlers that take the event by value or by reference.
template <typename Argument = core::event::Event>
class Listener : public core::event::EventBase
{
public:
    explicit Listener(const core::event::EventManagerPtr& manager) : EventBase(manager)
    {
        for (const char* const name : HEARD)
        {
            registerHandler(core::event::EventType(name), [this](Argument event)
                            { m_length += event.getEventData().getData().size(); });
        }
    }

    ~Listener() override { setEventManager(core::event::EventManagerPtr()); }

    /// All data heard so far.
    std::size_t length() const { return m_length; }

private:
    std::size_t m_length = 0;
};
} // namespace velmoran::bench
