// Insertion into a stream: the hash table that finds equal tuples.

#include "scene/geometry/Stream.h"

#include "core/utils/AllOrNothing.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace velmoran::scene
{
namespace
{
// Up to so many tuples, comparing with all of them is cheaper than a table.
constexpr std::size_t linearLimit = 16;

// Slots that are asked for together.
constexpr std::size_t blockSize = 16;

constexpr std::size_t maxTuples = std::numeric_limits<int>::max();

bool isSameTuple(const float* a, const float* b, std::size_t width)
{
    if (width == 3) // positions and normals: no loop, and one jump
    {
        return (a[0] == b[0]) & (a[1] == b[1]) & (a[2] == b[2]);
    }
    for (std::size_t i = 0; i < width; ++i)
    {
        if (!(a[i] == b[i]))
        {
            return false;
        }
    }
    return true;
}

std::uint64_t mix(std::uint64_t hash, float value)
{
    value += 0.0f; // equal floats need equal bits: -0.0 becomes 0.0
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return ((hash ^ (hash >> 32)) ^ bits) * 0x9E3779B97F4A7C15u;
}

/// Writes a hash that is the same for equal tuples. Returns false for a tuple with a
/// NaN, which equals nothing.
bool hashTuple(const float* values, std::size_t width, std::uint32_t& result)
{
    if (width == 3)
    {
        const std::uint64_t hash = mix(mix(mix(0, values[0]), values[1]), values[2]);
        result = static_cast<std::uint32_t>(hash >> 32);
        return isSameTuple(values, values, width);
    }
    bool isOrdered = true;
    std::uint64_t hash = 0;
    for (std::size_t i = 0; i < width; ++i)
    {
        isOrdered &= values[i] == values[i];
        hash = mix(hash, values[i]);
    }
    result = static_cast<std::uint32_t>(hash >> 32); // the well mixed half
    return isOrdered;
}

/// Asks for the cache line at `address`, which is written soon.
void prefetch([[maybe_unused]] const void* address)
{
#if defined(__GNUC__)
    __builtin_prefetch(address, 1);
#endif
}
} // namespace

// What every insertion needs is inline: three calls and their registers are a third of one
// that finds its tuple.

/// Whether at most two thirds of the slots are taken with so many tuples, which keeps the rows
/// of taken slots short.
inline bool Stream::hasRoom(std::size_t tuples) const
{
    return tuples * 3 <= m_slots.size() * 2;
}

inline std::size_t Stream::getHome(std::uint32_t hash) const
{
    return static_cast<std::size_t>((std::uint64_t(hash) << m_slotBits) >> 32);
}

inline std::uint32_t Stream::makeTag(std::uint32_t hash) const
{
    return static_cast<std::uint32_t>(std::uint64_t(hash) << m_slotBits);
}

inline std::uint32_t Stream::makeSlot(std::size_t tuple, std::uint32_t hash) const
{
    return makeTag(hash) | static_cast<std::uint32_t>(tuple + 1);
}

/// Whether the tuple in `slot` may have the hash that `tag` was made of.
inline bool Stream::isCandidate(std::uint32_t slot, std::uint32_t tag) const
{
    return (slot ^ tag) < m_slots.size();
}

inline std::size_t Stream::slotTuple(std::uint32_t slot) const
{
    return (slot & (m_slots.size() - 1)) - 1;
}

/// The slot that holds a tuple equal to `values`, else the free one where it belongs.
inline std::uint32_t& Stream::findSlot(const float* values, std::uint32_t hash)
{
    const auto width = static_cast<std::size_t>(m_stride);
    const std::size_t mask = m_slots.size() - 1;
    const std::uint32_t tag = makeTag(hash);
    for (std::size_t i = getHome(hash);; ++i)
    {
        std::uint32_t& slot = m_slots[i & mask];
        if (slot == 0 || (isCandidate(slot, tag) &&
                          isSameTuple(&m_data[slotTuple(slot) * width], values, width)))
        {
            return slot;
        }
    }
}

inline int Stream::insertIndexed(const float* values, std::size_t index)
{
    std::uint32_t hash = 0;
    if (!hashTuple(values, static_cast<std::size_t>(m_stride), hash))
    {
        return append(values, index);
    }
    if (m_indexedTuples != index || !hasRoom(index + 1))
    {
        updateIndex(index, 1, index);
    }
    std::uint32_t& slot = findSlot(values, hash);
    if (slot != 0)
    {
        return static_cast<int>(slotTuple(slot));
    }
    // Behind a broken last tuple, what is appended is not what will be read at `index`;
    // the next insertion then takes that into the table.
    const bool isWhole = m_data.size() == index * static_cast<std::size_t>(m_stride);
    const int result = append(values, index);
    if (isWhole && result >= 0)
    {
        slot = makeSlot(index, hash);
        m_indexedTuples = index + 1;
    }
    return result;
}

int Stream::insertValue(int n, const float* values)
{
    if (n != m_stride || n <= 0 || values == nullptr)
    {
        return -1;
    }
    const std::size_t index = getTupleCount();
    if (m_allowDuplicates)
    {
        return append(values, index);
    }
    if (index > linearLimit)
    {
        return insertIndexed(values, index);
    }
    const auto width = static_cast<std::size_t>(n);
    for (std::size_t i = 0; i < index; ++i)
    {
        if (isSameTuple(&m_data[i * width], values, width))
        {
            return static_cast<int>(i);
        }
    }
    return append(values, index);
}

std::vector<int> Stream::insertValues(std::vector<float> values)
{
    const auto width = static_cast<std::size_t>(std::max(m_stride, 0));
    const std::size_t count = width != 0 ? values.size() / width : 0;
    const std::size_t before = width != 0 ? getTupleCount() : 0;
    std::vector<int> indices(count);
    core::utils::UndoUnlessKept undo(
        [this, size = m_data.size(), tuples = m_count]
        {
            m_data.resize(size);
            m_count = tuples;
            dropIndex();
        });
    if (m_allowDuplicates || count <= linearLimit || m_data.size() != before * width ||
        count > maxTuples - before)
    {
        for (std::size_t i = 0; i < count; ++i)
        {
            indices[i] = insertValue(m_stride, &values[i * width]);
        }
        undo.keep();
        return indices;
    }
    updateIndex(before, 0, before);
    values.resize(count * width);
    if (m_data.empty())
    {
        m_data = std::move(values);
    }
    else
    {
        m_data.insert(m_data.end(), values.begin(), values.end());
    }
    sortOut(before, indices);
    undo.keep();
    return indices;
}

void Stream::makeRoom(std::size_t tuples)
{
    if (m_stride <= 0)
    {
        return;
    }
    const std::size_t present = getTupleCount();
    if (!m_allowDuplicates && present + tuples > linearLimit)
    {
        updateIndex(present, tuples + 1, present); // a broken last tuple may become one
    }
    // The values may stand in this stream's own data: they would be copied aside.
    core::utils::makeRoom(m_data, tuples * static_cast<std::size_t>(m_stride));
}

/// Keeps the first of equal tuples. Those before tuple `first` are in the table; the index of
/// each of the others is written to `indices`.
void Stream::sortOut(std::size_t first, std::vector<int>& indices)
{
    const auto width = static_cast<std::size_t>(m_stride);
    for (std::size_t done = 0; done < indices.size(); done += blockSize)
    {
        const double newOnes = done == 0 ? 1.0 : double(m_indexedTuples - first) / double(done);
        const double left = newOnes * double(indices.size() - done);
        updateIndex(m_indexedTuples, blockSize, m_indexedTuples + static_cast<std::size_t>(left));
        sortOutBlock(first + done, std::min(blockSize, indices.size() - done), &indices[done]);
    }
    m_data.resize(m_indexedTuples * width);
    if (m_data.capacity() / 2 > m_data.size())
    {
        m_data.shrink_to_fit();
    }
    const std::size_t room = maxTuples - static_cast<std::size_t>(std::max(m_count, 0));
    m_count += static_cast<int>(std::min(m_indexedTuples - first, room));
    m_revision.moveOn();
}

/// The same for `tuples` of them, at most blockSize, for which the table has room.
void Stream::sortOutBlock(std::size_t first, std::size_t tuples, int* indices)
{
    const auto width = static_cast<std::size_t>(m_stride);
    float* const data = m_data.data();
    std::uint32_t* const slots = m_slots.data();
    std::uint32_t hashes[blockSize];
    std::size_t homes[blockSize];
    bool isOrdered[blockSize];
    for (std::size_t i = 0; i < tuples; ++i)
    {
        isOrdered[i] = hashTuple(data + (first + i) * width, width, hashes[i]);
        homes[i] = getHome(hashes[i]);
        prefetch(slots + homes[i]);
    }
    for (std::size_t i = 0; i < tuples; ++i)
    {
        const std::uint32_t slot = slots[homes[i]];
        if (slot != 0 && isCandidate(slot, makeTag(hashes[i])))
        {
            prefetch(data + slotTuple(slot) * width);
        }
    }
    std::size_t next = m_indexedTuples;
    for (std::size_t i = 0; i < tuples; ++i)
    {
        const float* const tuple = data + (first + i) * width;
        if (isOrdered[i])
        {
            std::uint32_t& home = slots[homes[i]];
            std::uint32_t& slot = home == 0 ? home : findSlot(tuple, hashes[i]);
            if (slot != 0)
            {
                indices[i] = static_cast<int>(slotTuple(slot));
                continue;
            }
            slot = makeSlot(next, hashes[i]);
        }
        for (std::size_t j = 0; j < width; ++j)
        {
            data[next * width + j] = tuple[j]; // it stands there already if all were new
        }
        indices[i] = static_cast<int>(next++);
    }
    m_indexedTuples = next;
}

/// Number of whole tuples. The table's count spares the division in a long row of
/// insertions.
std::size_t Stream::getTupleCount() const
{
    const auto width = static_cast<std::size_t>(m_stride);
    return m_indexedTuples * width == m_data.size() ? m_indexedTuples : m_data.size() / width;
}

int Stream::append(const float* values, std::size_t index)
{
    if (index >= maxTuples)
    {
        return -1;
    }
    const auto width = static_cast<std::size_t>(m_stride);
    if (m_data.capacity() - m_data.size() < width)
    {
        // Growing moves the data that `values` may point into.
        const std::vector<float> tuple(values, values + width);
        m_data.insert(m_data.end(), tuple.begin(), tuple.end());
    }
    else
    {
        m_data.insert(m_data.end(), values, values + width);
    }
    m_count += m_count < std::numeric_limits<int>::max() ? 1 : 0;
    m_revision.moveOn();
    return static_cast<int>(index);
}

/// Takes the first `tuples` tuples into the table and leaves room for `room` more. A table
/// that must grow is made for `expected` tuples at once, if that is not far more.
void Stream::updateIndex(std::size_t tuples, std::size_t room, std::size_t expected)
{
    // A table that knows of more tuples than there are is of data that was cut behind its
    // back.
    const std::size_t needed = tuples + room;
    if (!hasRoom(needed) || m_indexedTuples > tuples)
    {
        const std::size_t wanted = std::max(needed, std::min(expected, 64 * needed));
        unsigned int bits = 6;
        while (wanted * 3 > (std::size_t(2) << bits))
        {
            ++bits;
        }
        m_slots.assign(std::size_t(1) << bits, 0);
        m_slotBits = bits;
        m_indexedTuples = 0;
    }
    while (m_indexedTuples < tuples)
    {
        indexBlock(std::min(blockSize, tuples - m_indexedTuples));
    }
}

/// Takes the next `tuples` tuples, at most blockSize, into the table. Every slot is a
/// cache miss in a large table; asking for a block of them at once hides most of it.
void Stream::indexBlock(std::size_t tuples)
{
    const auto width = static_cast<std::size_t>(m_stride);
    const float* const first = &m_data[m_indexedTuples * width];
    std::uint32_t hashes[blockSize];
    bool isOrdered[blockSize];
    for (std::size_t i = 0; i < tuples; ++i)
    {
        isOrdered[i] = hashTuple(first + i * width, width, hashes[i]);
        prefetch(&m_slots[getHome(hashes[i])]);
    }
    for (std::size_t i = 0; i < tuples; ++i, ++m_indexedTuples)
    {
        if (!isOrdered[i])
        {
            continue;
        }
        std::uint32_t& slot = findSlot(first + i * width, hashes[i]);
        if (slot == 0) // else an equal tuple stands before this one and is the answer
        {
            slot = makeSlot(m_indexedTuples, hashes[i]);
        }
    }
}

void Stream::dropIndex()
{
    m_slots.clear();
    m_indexedTuples = 0;
}
} // namespace velmoran::scene
