#include "scene/deform/Influences.h"

#include <algorithm>

namespace velmoran::scene
{
std::size_t InfluenceLists::countAt(std::size_t vertex, std::size_t before) const
{
    const std::size_t wanted = vertex < vcount.size() ? vcount[vertex] : 0;
    return std::min(wanted, v.size() / 2 - before);
}

void InfluenceLists::append(std::size_t before, std::size_t count,
                            std::vector<Influence>& influences) const
{
    for (std::size_t i = before; i < before + count; ++i)
    {
        const auto weight = static_cast<std::size_t>(v[2 * i + 1]); // large if it was negative
        if (weight < weights.size())
        {
            influences.push_back({v[2 * i], weights[weight]});
        }
    }
}

void joinHalfway(std::vector<Influence>& influences)
{
    // Weights are added up in the order in which they were given.
    std::stable_sort(influences.begin(), influences.end(),
                     [](const Influence& a, const Influence& b) { return a.joint < b.joint; });
    std::size_t joints = 0;
    for (std::size_t i = 0; i < influences.size(); ++i)
    {
        if (joints != 0 && influences[joints - 1].joint == influences[i].joint)
        {
            influences[joints - 1].weight += influences[i].weight;
            continue;
        }
        influences[joints++] = influences[i];
    }
    influences.resize(joints);
    for (Influence& influence : influences)
    {
        influence.weight *= 0.5F;
    }
}
} // namespace velmoran::scene
