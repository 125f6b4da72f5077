#include "scene/geometry/NormalSlots.h"

#include "scene/geometry/Stream.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace velmoran::scene
{
namespace
{
std::size_t placeOf(const TriangleMeshPrimitive& primitive, StreamSemantic semantic)
{
    const std::vector<StreamMapping>& inputs = primitive.getStreamMapping();
    return static_cast<std::size_t>(findStreamMapping(inputs, semantic) - inputs.data());
}

/// The index records of a primitive.
template <typename Entries>
struct Records
{
    Records(const TriangleMeshPrimitive& primitive, Entries& indices)
        : entries(indices),
          width(primitive.getIndexStreamStride()),
          position(placeOf(primitive, VERTEX)),
          normal(placeOf(primitive, NORMAL))
    {
    }

    /// Calls `handle(position, normal)` with both entries of each record that has them.
    template <typename Handle>
    void forEach(Handle handle) const
    {
        const std::size_t last = std::max(normal, position);
        for (std::size_t record = 0; record + last < entries.size(); record += width)
        {
            handle(entries[record + position], entries[record + normal]);
        }
    }

    Entries& entries;
    std::size_t width;
    std::size_t position; ///< slot
    std::size_t normal;   ///< slot
};

// Marks in place of tuples, which are counted by records and therefore less.
constexpr unsigned int UNSEEN = std::numeric_limits<unsigned int>::max();
constexpr unsigned int UNORDERED = UNSEEN - 1;
} // namespace

NormalSlots::NormalSlots(const std::vector<float>& normals,
                         const std::vector<TriangleMeshPrimitive*>& primitives, Stream& target)
    : m_primitives(primitives)
{
    // A place behind the record is one of a later record: what is written there may be read
    // as a position, and the other way round.
    const bool areApart =
        std::all_of(primitives.begin(), primitives.end(),
                    [](const TriangleMeshPrimitive* primitive)
                    {
                        const Records records(*primitive, primitive->getIndexStream());
                        return records.normal < records.width && records.position < records.width;
                    });
    if (areApart)
    {
        number(normals, target);
    }
    else
    {
        writeOneByOne(normals, target);
    }
}

/// Numbers normals in the order in which records first name their positions, inserts them in
/// that order, and makes tuples of the numbers. One with a NaN equals nothing, not even
/// itself: it gets a tuple for each record.
void NormalSlots::number(const std::vector<float>& normals, Stream& target)
{
    m_tuples.assign(normals.size() / 3, UNSEEN);
    std::vector<float> values; // by number
    values.reserve(normals.size());
    unsigned int count = 0;
    const auto add = [&](unsigned int position)
    {
        for (std::size_t i = 0; i < 3; ++i)
        {
            values.push_back(normals[3 * std::size_t(position) + i]);
        }
        return count++;
    };
    for (const TriangleMeshPrimitive* const primitive : m_primitives)
    {
        Records(*primitive, primitive->getIndexStream())
            .forEach(
                [&](unsigned int position, unsigned int)
                {
                    if (position >= m_tuples.size() || m_tuples[position] < UNORDERED)
                    {
                        return;
                    }
                    const float* const normal = &normals[3 * std::size_t(position)];
                    if (std::equal(normal, normal + 3, normal))
                    {
                        m_tuples[position] = add(position);
                        return;
                    }
                    m_tuples[position] = UNORDERED;
                    m_unordered.push_back(add(position));
                });
    }
    const std::vector<int> tuples = target.insertValues(std::move(values));
    for (std::vector<unsigned int>* const numbers : {&m_tuples, &m_unordered})
    {
        for (unsigned int& entry : *numbers)
        {
            entry = entry < UNORDERED ? static_cast<unsigned int>(tuples[entry]) : entry;
        }
    }
}

void NormalSlots::writeOneByOne(const std::vector<float>& normals, Stream& target)
{
    const std::size_t positions = normals.size() / 3;
    for (const TriangleMeshPrimitive* const primitive : m_primitives)
    {
        m_indices.push_back(primitive->getIndexStream());
        Records(*primitive, m_indices.back())
            .forEach(
                [&](unsigned int position, unsigned int& normal)
                {
                    if (position < positions)
                    {
                        const int tuple =
                            target.insertValue(3, &normals[3 * std::size_t(position)]);
                        normal = static_cast<unsigned int>(tuple);
                    }
                });
    }
}

void NormalSlots::publish()
{
    std::size_t unordered = 0;
    for (std::size_t i = 0; i < m_primitives.size(); ++i)
    {
        std::vector<unsigned int>& indices = m_primitives[i]->mutableIndexStream();
        if (!m_indices.empty())
        {
            indices.swap(m_indices[i]);
            continue;
        }
        Records(*m_primitives[i], indices)
            .forEach(
                [&](unsigned int position, unsigned int& normal)
                {
                    if (position < m_tuples.size())
                    {
                        const unsigned int tuple = m_tuples[position];
                        normal = tuple == UNORDERED ? m_unordered[unordered++] : tuple;
                    }
                });
    }
}
} // namespace velmoran::scene
