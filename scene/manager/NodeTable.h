#pragma once

#include "scene/Forward.h"

#include <cstddef>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// Nodes by identifier: a hash table that holds no text and no node of its own.
///
/// Its nodes must live, and keep their identifiers, until the table is cleared or not
///     asked any more.
/// Cost: constant on average; it also reads the node that it finds.
class NodeTable
{
public:
    void clear();

    /// Makes room for `count` more nodes.
    void reserve(std::size_t count);

    /// Adds `node`, unless one with its identifier is there.
    void insert(Node& node);

    /// The node with this identifier; null when there is none.
    Node* find(const std::string& id) const;

private:
    struct Slot
    {
        std::size_t hash;
        Node* node; ///< null where free
    };

    std::size_t locate(std::size_t hash, const std::string& id) const;

    std::vector<Slot> m_slots; ///< none, or a power of two; at most two thirds are taken
    std::size_t m_count = 0;
};
} // namespace velmoran::scene
