#include "examples/scenetool/EventPrinter.h"

#include "examples/scenetool/Text.h"
#include "scene/EventTypes.h"

namespace velmoran::examples
{
namespace
{
constexpr std::size_t MAX_TERMINAL_DATA = 80;
} // namespace

EventPrinter::EventPrinter(const core::event::EventManagerPtr& eventManager, std::ostream* out,
                           bool isTerminal)
    : EventBase(eventManager), m_out(out), m_isTerminal(isTerminal)
{
    namespace events = scene::events;
    for (const core::event::EventType& type :
         {events::sceneTopologyUpdate(), events::nodeTransformationUpdate(), events::sceneUpdate(),
          events::nodeAddedLayer(), events::nodeRemovedLayer(), events::nodeAddedLight(),
          events::nodeMaterialChanged(), events::cameraUpdated(), events::lightUpdated(),
          events::geometryTopologyUpdate(), events::syncScene(), events::sceneSurroundingUpdate(),
          events::sceneNewCamera(), core::event::EventType("DisplayMessageAt")})
    {
        EventBase::registerToListen(type);
    }
}

EventPrinter::~EventPrinter()
{
    EventBase::setEventManager({});
}

void EventPrinter::handleEvent(core::event::Event event)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::string& name = event.getEventType().getName();
    ++m_counts[name];
    if (m_out == nullptr)
    {
        return;
    }
    std::string data = onOneLine(event.getEventData().getData());
    if (m_isTerminal && data.size() > MAX_TERMINAL_DATA)
    {
        data = data.substr(0, MAX_TERMINAL_DATA) + "...";
    }
    *m_out << name << (data.empty() ? "" : "  ") << data << '\n';
}

std::map<std::string, std::size_t> EventPrinter::getCounts() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_counts;
}

std::string EventPrinter::summary() const
{
    std::string text;
    for (const auto& [name, count] : getCounts())
    {
        text += (text.empty() ? "" : ", ") + std::to_string(count) + ' ' + name;
    }
    return text.empty() ? "none" : text;
}
} // namespace velmoran::examples
