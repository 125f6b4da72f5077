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
struct Records
{
    explicit Records(TriangleMeshPrimitive& primitive)
        : entries(primitive.mutableIndexStream()),
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

    std::vector<unsigned int>& entries;
    std::size_t width;
    std::size_t position; ///< slot
    std::size_t normal;   ///< slot
};
} // namespace

/// Numbers normals in the order in which records first name their positions. One with a NaN
/// equals nothing, not even itself: it gets a number for each record.
class NormalSlots::Numbers
{
public:
    explicit Numbers(const std::vector<float>& normals)
        : m_normals(normals), m_numbers(normals.size() / 3, UNSEEN)
    {
    }

    bool has(unsigned int position) const { return position < m_numbers.size(); }

    /// The number of a position that is there. Counts up when it is a new one.
    unsigned int get(unsigned int position)
    {
        unsigned int& number = m_numbers[position];
        if (number == UNSEEN)
        {
            const float* const normal = getNormal(position);
            const bool isOrdered = std::equal(normal, normal + 3, normal);
            number = isOrdered ? m_count : UNORDERED;
            return m_count++;
        }
        return number == UNORDERED ? m_count++ : number;
    }

    unsigned int count() const { return m_count; }

    const float* getNormal(unsigned int position) const
    {
        return &m_normals[3 * std::size_t(position)];
    }

private:
    // Marks in place of numbers, which are counted by records and therefore less.
    static constexpr unsigned int UNSEEN = std::numeric_limits<unsigned int>::max();
    static constexpr unsigned int UNORDERED = UNSEEN - 1;

    const std::vector<float>& m_normals;
    std::vector<unsigned int> m_numbers; ///< of each position
    unsigned int m_count = 0;
};

NormalSlots::NormalSlots(const std::vector<float>& normals) : m_normals(normals) {}

void NormalSlots::write(const std::vector<TriangleMeshPrimitive*>& primitives, Stream& target) const
{
    // A place behind the record is one of a later record: what is written there may be read
    // as a position, and the other way round.
    const bool areApart =
        std::all_of(primitives.begin(), primitives.end(),
                    [](TriangleMeshPrimitive* primitive)
                    {
                        const Records records(*primitive);
                        return records.normal < records.width && records.position < records.width;
                    });
    if (areApart)
    {
        writeTogether(primitives, target);
    }
    else
    {
        writeOneByOne(primitives, target);
    }
}

void NormalSlots::writeTogether(const std::vector<TriangleMeshPrimitive*>& primitives,
                                Stream& target) const
{
    Numbers numbers(m_normals);
    std::vector<float> values; // by number
    for (TriangleMeshPrimitive* const primitive : primitives)
    {
        Records(*primitive)
            .forEach(
                [&](unsigned int position, unsigned int& normal)
                {
                    if (!numbers.has(position))
                    {
                        return;
                    }
                    const unsigned int before = numbers.count();
                    normal = numbers.get(position);
                    if (numbers.count() != before)
                    {
                        const float* const value = numbers.getNormal(position);
                        values.insert(values.end(), value, value + 3);
                    }
                });
    }
    const std::vector<int> tuples = target.insertValues(std::move(values));
    for (TriangleMeshPrimitive* const primitive : primitives)
    {
        Records(*primitive)
            .forEach(
                [&](unsigned int position, unsigned int& normal)
                {
                    if (numbers.has(position))
                    {
                        normal = static_cast<unsigned int>(tuples[normal]);
                    }
                });
    }
}

void NormalSlots::writeOneByOne(const std::vector<TriangleMeshPrimitive*>& primitives,
                                Stream& target) const
{
    const std::size_t positions = m_normals.size() / 3;
    for (TriangleMeshPrimitive* const primitive : primitives)
    {
        Records(*primitive)
            .forEach(
                [&](unsigned int position, unsigned int& normal)
                {
                    if (position < positions)
                    {
                        const int tuple =
                            target.insertValue(3, &m_normals[3 * std::size_t(position)]);
                        normal = static_cast<unsigned int>(tuple);
                    }
                });
    }
}
} // namespace velmoran::scene
