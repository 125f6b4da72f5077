#include "scene/manager/NodeTable.h"

#include "scene/graph/Node.h"

#include <algorithm>
#include <functional>

namespace velmoran::scene
{
void NodeTable::clear()
{
    m_slots.clear();
    m_count = 0;
}

void NodeTable::reserve(std::size_t count)
{
    std::size_t size = std::max<std::size_t>(m_slots.size(), 16);
    while (size * 2 < (m_count + count) * 3)
    {
        size *= 2;
    }
    if (size == m_slots.size())
    {
        return;
    }
    std::vector<Slot> before(size, Slot{0, nullptr});
    before.swap(m_slots);
    for (const Slot& slot : before)
    {
        if (slot.node != nullptr)
        {
            std::size_t place = slot.hash & (size - 1);
            while (m_slots[place].node != nullptr)
            {
                place = (place + 1) & (size - 1);
            }
            m_slots[place] = slot;
        }
    }
}

void NodeTable::insert(Node& node)
{
    reserve(1);
    const std::size_t hash = std::hash<std::string>()(node.getID());
    Slot& slot = m_slots[locate(hash, node.getID())];
    if (slot.node == nullptr)
    {
        slot = {hash, &node};
        ++m_count;
    }
}

Node* NodeTable::find(const std::string& id) const
{
    return m_slots.empty() ? nullptr : m_slots[locate(std::hash<std::string>()(id), id)].node;
}

/// The slot of the node with this identifier, else the free one where it belongs.
std::size_t NodeTable::locate(std::size_t hash, const std::string& id) const
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t place = hash & mask;
    while (m_slots[place].node != nullptr &&
           (m_slots[place].hash != hash || m_slots[place].node->getID() != id))
    {
        place = (place + 1) & mask;
    }
    return place;
}
} // namespace velmoran::scene
