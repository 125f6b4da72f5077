#pragma once

#include "examples/collada/Document.h"
#include "scene/Forward.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace velmoran::examples::collada
{
/// What the names in a stream are: words whose meaning depends on who uses them, the IDs
/// of elements, or paths of an ID and scoped IDs.
enum class NameKind
{
    WORDS,
    IDS,
    PATHS
};

/// Turns `<source>` elements into streams.
///
/// A stream holds the tuples that the source's accessor picks from its array, back to
/// back; the stride is the accessor's. Names go to the stream's name list, one entry
/// for each value, and leave its data empty; integers and booleans become floats.
/// Each source gives one stream, which all who refer to it share.
class Sources
{
public:
    /// `document` must outlive this object.
    explicit Sources(const Document& document);

    /// The stream of a `<source>`.
    scene::StreamPtr getStream(const pugi::xml_node& source);

    /// The streams of all `<source>` that stand directly in `parent`.
    std::vector<scene::StreamPtr> getStreamsIn(const pugi::xml_node& parent);

    /// The stream that the attribute "source" of an `<input>` names.
    scene::StreamPtr getInput(const pugi::xml_node& input);

    /// What the names in one of these streams are.
    NameKind getNameKind(const scene::StreamPtr& stream) const;

private:
    /// How an accessor goes through its array; counted in values of the array.
    struct Access
    {
        std::uint64_t offset = 0;
        std::uint64_t stride = 1;
        std::uint64_t count = 0; ///< tuples
    };

    scene::StreamPtr read(const pugi::xml_node& source);
    pugi::xml_node findArray(const pugi::xml_node& source, const pugi::xml_node& accessor) const;
    Access readAccess(const pugi::xml_node& accessor, std::size_t arraySize) const;
    void limitSharing(const pugi::xml_node& source, const pugi::xml_node& array,
                      std::size_t arraySize);

    const Document& m_document;
    std::unordered_map<const void*, scene::StreamPtr> m_streams; ///< by element
    std::unordered_map<const scene::Stream*, NameKind> m_kinds;  ///< of those not of words
    std::uint64_t m_sharedValues = 0; ///< values read from arrays of other sources
};
} // namespace velmoran::examples::collada
