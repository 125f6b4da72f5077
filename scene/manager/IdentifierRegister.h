#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// The identifiers of a scene that begin with "OID", and where new ones come from.
class IdentifierRegister
{
public:
    /// A moment to which the register can return.
    struct Mark
    {
        std::size_t recorded;
        std::uint32_t counter;
    };

    /// Records an identifier that begins with "OID"; ignores any other.
    void record(std::string id);

    /// "OID" and the next number whose identifier is not recorded. Does not record it.
    std::string generate();

    Mark getMark() const;

    /// Forgets what was recorded and generated since.
    void returnTo(const Mark& mark);

private:
    std::set<std::string> m_used;
    std::vector<std::set<std::string>::const_iterator> m_order; ///< of recording
    std::uint32_t m_counter = 0;
};
} // namespace velmoran::scene
