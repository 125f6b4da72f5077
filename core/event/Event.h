#pragma once

#include "core/Forward.h"
#include "core/event/EventData.h"
#include "core/event/EventType.h"

#include <string>

namespace velmoran::core::event
{
/// Something that happened: its type, its arguments and who raised it.
///
/// Ownership: copies share one immutable content, so handlers may take events
///     by value; copying allocates nothing.
/// Threads: may be read and copied from any thread.
class VELMORAN_CORE_EXPORT Event
{
public:
    /// An event of these contents, which never change.
    Event(EventType type, EventData data, std::string source);
    virtual ~Event();

    /// Copies share the content.
    Event(const Event& other);
    Event& operator=(const Event& other);

    /// What is moved from can only be assigned to or destroyed.
    Event(Event&& other) noexcept;
    Event& operator=(Event&& other) noexcept;

    const EventType& getEventType() const;
    const EventData& getEventData() const;

    /// Who raised the event; the scene library leaves it empty.
    const std::string& getSource() const;

private:
    struct Content;

    boost::shared_ptr<const Content> m_content; ///< empty only when moved from
};
} // namespace velmoran::core::event
