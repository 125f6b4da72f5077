#include "scene/manager/IdentifierRegister.h"

#include "core/utils/AllOrNothing.h"

#include <utility>

namespace velmoran::scene
{
void IdentifierRegister::record(std::string id)
{
    if (id.compare(0, 3, "OID") == 0)
    {
        core::utils::makeRoom(m_order);
        const auto [place, isNew] = m_used.insert(std::move(id));
        if (isNew)
        {
            m_order.push_back(place);
        }
    }
}

std::string IdentifierRegister::generate()
{
    std::uint32_t counter = m_counter;
    std::string candidate;
    do
    {
        candidate = "OID" + std::to_string(counter++);
    } while (m_used.count(candidate) != 0);
    m_counter = counter;
    return candidate;
}

IdentifierRegister::Mark IdentifierRegister::getMark() const
{
    return {m_order.size(), m_counter};
}

void IdentifierRegister::returnTo(const Mark& mark)
{
    while (m_order.size() > mark.recorded)
    {
        m_used.erase(m_order.back());
        m_order.pop_back();
    }
    m_counter = mark.counter;
}
} // namespace velmoran::scene
