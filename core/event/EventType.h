#pragma once

#include "core/Export.h"
#include "core/Forward.h"

#include <cstddef>
#include <string>

namespace velmoran::core::event
{
/// The name of a kind of event, e.g. "SceneTopologyUpdate".
///
/// Ownership: copies share one immutable name, so copying allocates nothing.
/// Threads: may be read and copied from any thread.
class VELMORAN_CORE_EXPORT EventType
{
public:
    /// A type of this name; any text will do.
    EventType(std::string name);

    /// The same.
    EventType(const char* name);
    virtual ~EventType();

    /// Copies share the name.
    EventType(const EventType& other);
    EventType& operator=(const EventType& other);

    /// What is moved from can only be assigned to or destroyed.
    EventType(EventType&& other) noexcept;
    EventType& operator=(EventType&& other) noexcept;

    const std::string& getName() const;

    /// Hash of the name, computed once when the type is made.
    std::size_t getHash() const;

    /// Equal when the names are equal.
    friend VELMORAN_CORE_EXPORT bool operator==(const EventType& a, const EventType& b);
    friend VELMORAN_CORE_EXPORT bool operator!=(const EventType& a, const EventType& b);

private:
    struct Name;

    boost::shared_ptr<const Name> m_name; ///< empty only when moved from
};
} // namespace velmoran::core::event
