#pragma once

#include "scene/graph/Node.h"

#include <Eigen/Core>
#include <boost/container/small_vector.hpp>

#include <unordered_map>
#include <utility>

namespace velmoran::scene
{
/// A value for nodes that each derive from their parent's: computed once for each node on
/// the way to the root, so that many nodes of a tree cost one visit of each node above them.
///
/// Valid as long as nobody changes or releases the nodes.
template <typename Value>
class AlongParents
{
public:
    explicit AlongParents(Value aboveRoot) : m_aboveRoot(std::move(aboveRoot)) {}

    /// The value of `node`: `derive(node, value of its parent)`. The reference stays valid.
    template <typename Derive>
    const Value& of(const Node& node, Derive derive)
    {
        boost::container::small_vector<const Node*, 16>
            path; // without a value, from `node` upwards
        const Value* value = find(&node);
        for (const Node* above = &node; value == nullptr; value = find(above))
        {
            path.push_back(above);
            above = above->getParent().get();
        }
        for (auto next = path.rbegin(); next != path.rend(); ++next)
        {
            value = &m_values.emplace(*next, derive(**next, *value)).first->second;
        }
        return *value;
    }

private:
    const Value* find(const Node* node) const
    {
        const auto found = m_values.find(node);
        return node == nullptr ? &m_aboveRoot : found == m_values.end() ? nullptr : &found->second;
    }

    const Value m_aboveRoot;
    std::unordered_map<const Node*, Value> m_values;
};

/// World matrices of nodes in double precision, each computed once.
class WorldMatrices
{
public:
    WorldMatrices();

    /// The product of the local matrices from the root down to `node`.
    const Eigen::Matrix4d& of(const Node& node);

private:
    AlongParents<Eigen::Matrix4d> m_worlds;
};

/// The inverse of an affine matrix. One that collapses a direction, as a scale of 0 does,
/// gets the Moore-Penrose inverse of its linear part (Penrose 1955), which goes back as far
/// as that is possible.
Eigen::Matrix4d affineInverse(const Eigen::Matrix4d& matrix);
} // namespace velmoran::scene
