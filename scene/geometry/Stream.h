#pragma once

#include "core/utils/Revision.h"
#include "scene/Export.h"
#include "scene/Forward.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace velmoran::scene
{
/// Equally wide float tuples in a row: positions, key times, weights or matrices.
///
/// Layout: tuple i stands at `getData()[i * getStride()]`, without gaps. A matrix is
///     one tuple of 16 floats, written row by row.
/// Ownership: held by handles. Meshes, primitives and skins share streams; a change
///     is seen by all of them.
/// Threads: not locked. Reading from several threads at once is safe while nobody
///     writes; writers hold the scene lock.
class VELMORAN_SCENE_EXPORT Stream
{
public:
    /// A name and a type, e.g. ("X", "float"), that describe one float of a tuple.
    using Param = std::pair<std::string, std::string>;

    /// An empty stream of `stride` floats per tuple. Without `allowDuplicates` equal
    /// tuples are stored once (see `insertValue`). A stream whose stride is not
    /// positive takes no values.
    Stream(std::string id, int stride, bool allowDuplicates);

    virtual ~Stream();

    /// Copies everything, the lists included.
    Stream(const Stream& other);
    Stream& operator=(const Stream& other);

    /// A stream with the same ID, stride, flag and count and a copy of the data. Its
    /// parameter and name lists are empty.
    StreamPtr clone() const;

    /// Stores a tuple of `n` floats and returns its index, which is the number of
    /// whole tuples before it. A stream without duplicates answers the first tuple
    /// whose floats all equal `values` instead, and stores nothing then: 0.0 equals
    /// -0.0, NaN equals nothing. Returns -1 and changes nothing when `n` is not the
    /// stride or not positive, or `values` is null. `values` may point into this
    /// stream's own data.
    ///
    /// Constant time on average. The first call after `setData`, `setStride` or
    /// `mutableData` costs time in proportion to the tuples present.
    int insertValue(int n, const float* values);

    /// Inserts the whole tuples of `values` one after the other, and returns what
    /// `insertValue` answers for each. Floats behind the last whole tuple are left out; a
    /// stream whose stride is not positive takes nothing and answers an empty list.
    ///
    /// Several times as fast as single calls when the stream is large: tuples are looked
    /// for in groups, and the table grows towards the size that the tuples so far suggest.
    /// An empty stream without duplicates takes over the memory of `values`.
    std::vector<int> insertValues(std::vector<float> values);

    /// Lets the next `tuples` insertions succeed without memory, as long as nothing else is
    /// changed. Insertions in a row stay fast.
    void makeRoom(std::size_t tuples);

    const std::string& getID() const;
    void setID(const std::string& id);

    /// Floats per tuple.
    int getStride() const;
    void setStride(int stride);

    /// Number of tuples stored by `insertValue`, or what `setCount` said. Replacing
    /// or editing the data does not change it.
    int getCount() const;
    void setCount(int count);

    /// Whether `insertValue` stores a tuple again that is already there.
    bool getAllowDuplicates() const;
    void setAllowDuplicates(bool allowDuplicates);

    const std::vector<float>& getData() const;

    /// Replaces all floats; the count stays as it is.
    void setData(std::vector<float> data);

    /// The floats for editing in place; the next insertion and the next turn of a player
    /// of animations see what was written. Do not write through the reference any more
    /// after such an insertion or turn: ask again. (A player notices the call, not the
    /// writing.)
    std::vector<float>& mutableData();

    /// @name Description of the source
    /// The library only keeps it, for readers and writers.
    /// @{

    const std::vector<Param>& getParamList() const;

    /// Appends a parameter; their number need not be the stride.
    void addParam(const std::string& name, const std::string& type);

    /// Texts of a source that holds names, such as joints or interpolations.
    const std::vector<std::string>& getNameList() const;

    /// Appends a name, also one that is there.
    void addName(const std::string& name);
    void setNameList(std::vector<std::string> names);

    /// The names for editing in place, as `mutableData`.
    std::vector<std::string>& mutableNameList();

    /// @}

    /// Moves on with every change of anything above but the ID.
    const core::utils::Revision& getRevision() const;

private:
    std::size_t getTupleCount() const;
    int append(const float* values, std::size_t index);
    int insertIndexed(const float* values, std::size_t index);
    void sortOut(std::size_t first, std::vector<int>& indices);
    void sortOutBlock(std::size_t first, std::size_t tuples, int* indices);
    bool hasRoom(std::size_t tuples) const;
    void updateIndex(std::size_t tuples, std::size_t room, std::size_t expected);
    void indexBlock(std::size_t tuples);
    std::uint32_t& findSlot(const float* values, std::uint32_t hash);
    std::size_t getHome(std::uint32_t hash) const;
    std::uint32_t makeTag(std::uint32_t hash) const;
    std::uint32_t makeSlot(std::size_t tuple, std::uint32_t hash) const;
    bool isCandidate(std::uint32_t slot, std::uint32_t tag) const;
    std::size_t slotTuple(std::uint32_t slot) const;
    void dropIndex();

    std::string m_id;
    int m_stride;
    int m_count;
    bool m_allowDuplicates;
    std::vector<Param> m_paramList;
    std::vector<float> m_data;
    std::vector<std::string> m_nameList;

    // Hash table over the first m_indexedTuples tuples of m_data, which finds the first
    // of equal ones; tuples with a NaN are not in it. Open addressing: the high bits of
    // a hash say where the search begins, its remaining bits are kept in the slot above
    // the tuple's index + 1, so that few slots of other tuples cost a look at the data.

    std::vector<std::uint32_t> m_slots; ///< 2^m_slotBits, 0 where free; none: not built
    unsigned int m_slotBits;
    std::size_t m_indexedTuples;

    core::utils::Revision m_revision;
};
} // namespace velmoran::scene
