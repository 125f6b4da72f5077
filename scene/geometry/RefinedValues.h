#pragma once

#include "scene/geometry/CornerValues.h"
#include "scene/geometry/EdgeTable.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace velmoran::scene
{
/// Corners of the four triangles that a triangle is split into.
constexpr std::size_t REFINED_CORNERS = 12;

/// Lists the values of refined corners in the order in which they are first written, and numbers
/// them.
///
/// A value is listed once for each corner number, and once for each edge if the triangles at it
///     have the same two numbers at its ends. Values that are equal all the same are listed
///     again, and so is one with a NaN, for every corner: whoever stores the list without
///     duplicates has the tuples that storing corner by corner gives.
/// `Midpoint`: one of the rules in Midpoints.h.
template <typename Midpoint>
class RefinedValues
{
public:
    /// Both must outlive this object. Corners behind those of the triangles whose edges are
    /// known may be added singly.
    RefinedValues(const CornerValues& corners, const EdgeTable& edges, bool keepsOrigins = false);

    /// Writes the numbers of the corners of a triangle's parts to entries[0], entries[step] ...
    void addTriangle(std::size_t triangle, unsigned int* entries, std::size_t step);

    /// Lists the value of a corner and returns its number.
    unsigned int addCorner(std::size_t corner);

    /// The list, which is handed over.
    std::vector<float> takeValues() { return std::move(m_values); }

    /// What each number was listed for: 2 * corner, or 2 * half-edge + 1 for its midpoint. None
    /// unless they are kept.
    const std::vector<unsigned int>& getOrigins() const { return m_origins; }

private:
    static constexpr std::size_t WIDTH = Midpoint::WIDTH;
    static constexpr unsigned int NO_NUMBER = CornerValues::NO_NUMBER;

    unsigned int addMidpoint(std::size_t half, std::size_t end);
    bool isSeam(std::size_t half, std::size_t end, std::size_t first) const;
    unsigned int addHalfway(std::size_t from, std::size_t to, std::size_t half);
    unsigned int add(const float* value, std::size_t origin);
    bool isRemembered(unsigned int number) const;

    const std::vector<unsigned int>& m_corners;
    const std::vector<float>& m_cornerValues;
    const EdgeTable& m_edges;
    bool m_isFinite; ///< whether no NaN can come up
    bool m_keepsOrigins;
    unsigned int m_count = 0; ///< of values
    std::vector<float> m_values;
    std::vector<unsigned int> m_origins;
    std::vector<unsigned int> m_ofCorner;   ///< number of the value of each corner number
    std::vector<unsigned int> m_ofMidpoint; ///< by the first half-edge of an edge
};

template <typename Midpoint>
RefinedValues<Midpoint>::RefinedValues(const CornerValues& corners, const EdgeTable& edges,
                                       bool keepsOrigins)
    : m_corners(corners.getCorners()),
      m_cornerValues(corners.getValues()),
      m_edges(edges),
      m_isFinite(std::all_of(m_cornerValues.begin(), m_cornerValues.end(),
                             [](float value) { return value - value == 0.0F; })),
      m_keepsOrigins(keepsOrigins),
      m_ofCorner(corners.countNumbers(), NO_NUMBER),
      m_ofMidpoint(edges.countHalves(), NO_NUMBER)
{
    const std::size_t expected = corners.countNumbers() + edges.countEdges();
    m_values.reserve(expected * WIDTH);
    m_origins.reserve(keepsOrigins ? expected : 0);
}

template <typename Midpoint>
void RefinedValues<Midpoint>::addTriangle(std::size_t triangle, unsigned int* entries,
                                          std::size_t step)
{
    const auto write = [=](const unsigned int(&numbers)[REFINED_CORNERS])
    {
        unsigned int* entry = entries;
        for (const unsigned int number : numbers)
        {
            *entry = number;
            entry += step;
        }
    };
    const std::size_t a = 3 * triangle;
    const std::size_t b = a + 1;
    const std::size_t c = a + 2;
    if (!m_isFinite)
    {
        // Each corner is asked for: it gets a number of its own if its value has a NaN.
        write({addCorner(a), addMidpoint(a, b), addMidpoint(c, a), //
               addMidpoint(a, b), addCorner(b), addMidpoint(b, c), //
               addMidpoint(c, a), addMidpoint(b, c), addCorner(c), //
               addMidpoint(a, b), addMidpoint(b, c), addMidpoint(c, a)});
        return;
    }
    const unsigned int cornerA = addCorner(a);
    const unsigned int ab = addMidpoint(a, b);
    const unsigned int ca = addMidpoint(c, a);
    const unsigned int cornerB = addCorner(b);
    const unsigned int bc = addMidpoint(b, c);
    const unsigned int cornerC = addCorner(c);
    write({cornerA, ab, ca, ab, cornerB, bc, ca, bc, cornerC, ab, bc, ca});
}

template <typename Midpoint>
unsigned int RefinedValues<Midpoint>::addCorner(std::size_t corner)
{
    const unsigned int number = m_corners[corner];
    unsigned int& known = m_ofCorner[number];
    if (known != NO_NUMBER)
    {
        return known;
    }
    const unsigned int added = add(&m_cornerValues[number * WIDTH], 2 * corner);
    known = isRemembered(added) ? added : NO_NUMBER;
    return added;
}

/// `end`: the corner where `half` ends.
template <typename Midpoint>
unsigned int RefinedValues<Midpoint>::addMidpoint(std::size_t half, std::size_t end)
{
    const std::size_t first = m_edges.getFirst(half);
    if (Midpoint::HAS_SEAMS && first != half && isSeam(half, end, first))
    {
        return addHalfway(half, end, half);
    }
    unsigned int& known = m_ofMidpoint[first];
    if (known != NO_NUMBER)
    {
        return known;
    }
    const unsigned int added = addHalfway(first, EdgeTable::next(first), half);
    known = isRemembered(added) ? added : NO_NUMBER;
    return added;
}

/// Whether the ends of an edge have other numbers at `half` than at its first half-edge.
template <typename Midpoint>
bool RefinedValues<Midpoint>::isSeam(std::size_t half, std::size_t end, std::size_t first) const
{
    const unsigned int from = m_corners[half];
    const unsigned int to = m_corners[end];
    const unsigned int firstFrom = m_corners[first];
    const unsigned int firstTo = m_corners[EdgeTable::next(first)];
    return (from != firstTo || to != firstFrom) && (from != firstFrom || to != firstTo);
}

/// Lists what is halfway between two corners, for the edge of `half`.
template <typename Midpoint>
unsigned int RefinedValues<Midpoint>::addHalfway(std::size_t from, std::size_t to, std::size_t half)
{
    float middle[WIDTH];
    Midpoint::write(&m_cornerValues[m_corners[from] * WIDTH],
                    &m_cornerValues[m_corners[to] * WIDTH], middle);
    return add(middle, 2 * half + 1);
}

template <typename Midpoint>
unsigned int RefinedValues<Midpoint>::add(const float* value, std::size_t origin)
{
    for (std::size_t i = 0; i < WIDTH; ++i)
    {
        m_values.push_back(value[i]);
    }
    if (m_keepsOrigins)
    {
        m_origins.push_back(static_cast<unsigned int>(origin));
    }
    return m_count++;
}

template <typename Midpoint>
bool RefinedValues<Midpoint>::isRemembered(unsigned int number) const
{
    const float* const value = &m_values[number * WIDTH];
    return m_isFinite || std::none_of(value, value + WIDTH,
                                      [](float coordinate) { return coordinate != coordinate; });
}
} // namespace velmoran::scene
