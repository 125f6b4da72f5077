#include "scene/geometry/EdgeTable.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace velmoran::scene
{
namespace
{
constexpr unsigned int NONE = std::numeric_limits<unsigned int>::max();

/// The half-edge that was met first between a corner and a certain other one.
struct FirstHalf
{
    unsigned int corner = NONE;
    unsigned int half = NONE;
};
} // namespace

EdgeTable::EdgeTable(const std::vector<unsigned int>& corners, std::size_t triangles,
                     std::size_t numbers)
    : m_first(3 * triangles)
{
    // Each corner number has a list of the half-edges between it and larger ones. m_first links
    // them, until each is met in its list and gets what it is there for.
    std::vector<unsigned int> lists(numbers, NONE);
    const auto putInFront = [&](std::size_t half, std::size_t end)
    {
        unsigned int& list = lists[std::min(corners[half], corners[end])];
        m_first[half] = std::exchange(list, static_cast<unsigned int>(half));
    };
    for (std::size_t half = m_first.size(); half != 0; half -= 3)
    {
        putInFront(half - 1, half - 3);
        putInFront(half - 2, half - 1);
        putInFront(half - 3, half - 2);
    }
    std::vector<FirstHalf> met(numbers); // by the larger number
    for (unsigned int smaller = 0; smaller < numbers; ++smaller)
    {
        for (unsigned int half = lists[smaller]; half != NONE;)
        {
            FirstHalf& first = met[std::max(corners[half], corners[next(half)])];
            if (first.corner != smaller)
            {
                first = {smaller, half};
                ++m_edges;
            }
            half = std::exchange(m_first[half], first.half);
        }
    }
}
} // namespace velmoran::scene
