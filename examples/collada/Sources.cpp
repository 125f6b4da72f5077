#include "examples/collada/Sources.h"

#include "examples/collada/Values.h"
#include "scene/geometry/Stream.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

namespace velmoran::examples::collada
{
namespace
{
constexpr Document::Kinds NAME_ARRAYS = {"Name_array", "IDREF_array", "SIDREF_array",
                                         "token_array"};
constexpr Document::Kinds ARRAYS = {"float_array", "int_array",    "bool_array", "Name_array",
                                    "IDREF_array", "SIDREF_array", "token_array"};

/// What all accessors together may read from arrays of other sources: this much, and
/// some values for each byte of the document. Without a limit a small file whose many
/// accessors share one array would fill the memory.
constexpr std::uint64_t FREE_SHARED_VALUES = 1000000;
constexpr std::uint64_t SHARED_VALUES_PER_BYTE = 4;

constexpr std::uint64_t MAX_INT = std::numeric_limits<int>::max();

bool isOneOf(const pugi::xml_node& element, Document::Kinds kinds)
{
    return std::any_of(kinds.begin(), kinds.end(),
                       [&element](const char* kind)
                       { return std::string_view(element.name()) == kind; });
}

NameKind getKind(const pugi::xml_node& array)
{
    const std::string_view name = array.name();
    if (name == "IDREF_array")
    {
        return NameKind::IDS;
    }
    return name == "SIDREF_array" ? NameKind::PATHS : NameKind::WORDS;
}

/// The values of `all` from `offset` on, `length` of them.
template <typename Value>
std::vector<Value> pick(std::vector<Value> all, std::uint64_t offset, std::uint64_t length)
{
    if (offset == 0 && length == all.size())
    {
        return all;
    }
    const auto begin = all.begin() + static_cast<std::ptrdiff_t>(offset);
    return std::vector<Value>(begin, begin + static_cast<std::ptrdiff_t>(length));
}
} // namespace

Sources::Sources(const Document& document) : m_document(document) {}

scene::StreamPtr Sources::getStream(const pugi::xml_node& source)
{
    scene::StreamPtr& stream = m_streams[source.internal_object()];
    if (!stream)
    {
        stream = read(source);
    }
    return stream;
}

std::vector<scene::StreamPtr> Sources::getStreamsIn(const pugi::xml_node& parent)
{
    std::vector<scene::StreamPtr> streams;
    for (const pugi::xml_node& source : parent.children("source"))
    {
        streams.push_back(getStream(source));
    }
    return streams;
}

scene::StreamPtr Sources::getInput(const pugi::xml_node& input)
{
    return getStream(m_document.resolveAttribute(input, "source", {"source"}));
}

NameKind Sources::getNameKind(const scene::StreamPtr& stream) const
{
    const auto found = m_kinds.find(stream.get());
    return found == m_kinds.end() ? NameKind::WORDS : found->second;
}

scene::StreamPtr Sources::read(const pugi::xml_node& source)
{
    const pugi::xml_node accessor = source.child("technique_common").child("accessor");
    const pugi::xml_node array = findArray(source, accessor);
    std::vector<float> numbers;
    std::vector<std::string> names;
    if (isOneOf(array, NAME_ARRAYS))
    {
        names = readWords(m_document, array);
    }
    else if (array)
    {
        numbers = readFloats(m_document, array);
    }
    const std::size_t size = numbers.size() + names.size();
    limitSharing(source, array, size);

    const Access access = readAccess(accessor, size);
    const std::uint64_t length = access.stride * access.count;
    const auto stream = boost::make_shared<scene::Stream>(getAttribute(source, "id"),
                                                          static_cast<int>(access.stride), false);
    stream->setCount(static_cast<int>(access.count));
    if (!names.empty())
    {
        if (getKind(array) != NameKind::WORDS)
        {
            m_kinds.emplace(stream.get(), getKind(array));
        }
        stream->setNameList(pick(std::move(names), access.offset, length));
    }
    else
    {
        stream->setData(pick(std::move(numbers), access.offset, length));
    }
    for (const pugi::xml_node& param : accessor.children("param"))
    {
        stream->addParam(getAttribute(param, "name"), getAttribute(param, "type"));
    }
    return stream;
}

/// The array that the accessor names; the source's own one when there is no accessor.
pugi::xml_node Sources::findArray(const pugi::xml_node& source,
                                  const pugi::xml_node& accessor) const
{
    if (accessor)
    {
        return m_document.resolveAttribute(accessor, "source", ARRAYS);
    }
    return source.find_child([](const pugi::xml_node& child) { return isOneOf(child, ARRAYS); });
}

/// Fails unless all tuples lie in the array. Without accessor every value is a tuple.
Sources::Access Sources::readAccess(const pugi::xml_node& accessor, std::size_t arraySize) const
{
    if (arraySize > MAX_INT)
    {
        m_document.fail(accessor, "its array is too long");
    }
    Access access;
    access.count = arraySize;
    if (!accessor)
    {
        return access;
    }
    access.offset = readCount(m_document, accessor, "offset").value_or(0);
    access.stride = readCount(m_document, accessor, "stride").value_or(1);
    if (access.stride == 0 || access.stride > MAX_INT)
    {
        m_document.fail(accessor, "its stride is " + std::to_string(access.stride));
    }
    access.count = requireCount(m_document, accessor, "count");
    const bool fits =
        access.offset <= arraySize && access.count <= (arraySize - access.offset) / access.stride;
    if (!fits)
    {
        m_document.fail(
            accessor, std::to_string(access.count) + " tuples of " + std::to_string(access.stride) +
                          " from value " + std::to_string(access.offset) +
                          " on do not fit its array of " + std::to_string(arraySize) + " values");
    }
    return access;
}

void Sources::limitSharing(const pugi::xml_node& source, const pugi::xml_node& array,
                           std::size_t arraySize)
{
    if (!array || array.parent() == source)
    {
        return;
    }
    m_sharedValues += arraySize;
    if (m_sharedValues > FREE_SHARED_VALUES + SHARED_VALUES_PER_BYTE * m_document.getSize())
    {
        m_document.fail(source, "the accessors of this document read too much from arrays of "
                                "other sources");
    }
}
} // namespace velmoran::examples::collada
