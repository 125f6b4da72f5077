#include "scene/geometry/CornerValues.h"

#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

#include <algorithm>
#include <iterator>

namespace velmoran::scene
{
namespace
{
bool isReadable(const StreamMapping* mapping)
{
    return mapping != nullptr && mapping->getStream() && mapping->getStream()->getStride() > 0;
}

const StreamMapping* findInVertices(const MeshPrimitiveBase& primitive, StreamSemantic semantic)
{
    const MeshPtr& mesh = primitive.getMesh();
    return mesh ? findStreamMapping(mesh->getVertices(), semantic) : nullptr;
}

/// The mapping through which `input` reaches `semantic`: itself, one of the mesh's vertices
/// list, or none. Positions are only reached through `VERTEX`.
const StreamMapping* reachedThrough(const StreamMapping& input, const StreamMapping* inVertices,
                                    StreamSemantic semantic)
{
    const StreamMapping* const mapping = input.getSemantic() == VERTEX ? inVertices
                                         : semantic != POSITION && input.getSemantic() == semantic
                                             ? &input
                                             : nullptr;
    return isReadable(mapping) ? mapping : nullptr;
}
} // namespace

CornerValues::CornerValues(StreamSemantic semantic, std::size_t width)
    : m_semantic(semantic), m_width(width), m_numbers(1, NO_NUMBER)
{
}

bool CornerValues::hasInput(const TriangleMeshPrimitive& primitive, StreamSemantic semantic)
{
    const StreamMapping* const inVertices = findInVertices(primitive, semantic);
    const std::vector<StreamMapping>& mapping = primitive.getStreamMapping();
    return std::any_of(mapping.begin(), mapping.end(),
                       [=](const StreamMapping& input)
                       { return reachedThrough(input, inVertices, semantic) != nullptr; });
}

void CornerValues::appendTriangles(const TriangleMeshPrimitive& primitive, std::size_t triangles)
{
    const std::vector<Input> inputs = inputsOf(primitive);
    const std::vector<unsigned int>& indices = primitive.getIndexStream();
    const std::size_t width = primitive.getStreamMapping().size();
    for (std::size_t i = 0; i < 3 * triangles; ++i)
    {
        m_corners.push_back(numberAt(findPlace(indices, i * width, inputs)));
    }
}

bool CornerValues::appendTuple(const StreamPtr& stream, std::size_t tuple)
{
    const Source source = sourceOf(stream);
    if (tuple < source.tuples)
    {
        m_corners.push_back(numberAt(source.first + tuple));
    }
    return tuple < source.tuples;
}

void CornerValues::appendNothing(std::size_t count)
{
    m_corners.insert(m_corners.end(), count, NO_NUMBER);
}

void CornerValues::reserve(std::size_t corners)
{
    m_corners.reserve(corners);
}

std::vector<int> CornerValues::getTuples() const
{
    std::vector<int> tuples(m_corners.size());
    std::transform(m_corners.begin(), m_corners.end(), tuples.begin(),
                   [this](unsigned int number) { return static_cast<int>(m_places[number]) - 1; });
    return tuples;
}

void CornerValues::joinEqualValues()
{
    const std::size_t before = countNumbers();
    Stream joined("", static_cast<int>(m_width), false);
    const std::vector<int> numbers = joined.insertValues(std::move(m_values));
    m_values = std::move(joined.mutableData());
    for (std::size_t i = 0; i < m_corners.size() && countNumbers() != before; ++i)
    {
        m_corners[i] = static_cast<unsigned int>(numbers[m_corners[i]]);
    }
}

CornerValues::Source CornerValues::sourceOf(const StreamPtr& stream)
{
    if (!stream || stream->getStride() <= 0)
    {
        return {stream.get(), 0, 0};
    }
    const auto known =
        std::find_if(m_sources.begin(), m_sources.end(),
                     [&stream](const Source& source) { return source.stream == stream.get(); });
    if (known != m_sources.end())
    {
        return *known;
    }
    const std::size_t tuples =
        stream->getData().size() / static_cast<std::size_t>(stream->getStride());
    m_sources.push_back({stream.get(), m_numbers.size(), tuples});
    m_numbers.resize(m_numbers.size() + tuples, NO_NUMBER);
    if (m_sources.size() == 1)
    {
        const std::size_t used = std::min(m_corners.capacity(), m_numbers.size()); // at most
        m_places.reserve(used);
        m_values.reserve(used * m_width);
    }
    return m_sources.back();
}

/// The inputs that reach the semantic, the one that has the last word first.
std::vector<CornerValues::Input> CornerValues::inputsOf(const TriangleMeshPrimitive& primitive)
{
    const StreamMapping* const inVertices = findInVertices(primitive, m_semantic);
    const std::vector<StreamMapping>& mapping = primitive.getStreamMapping();
    std::vector<Input> inputs;
    for (std::size_t slot = mapping.size(); slot-- > 0;)
    {
        const StreamMapping* const found = reachedThrough(mapping[slot], inVertices, m_semantic);
        if (found != nullptr)
        {
            inputs.push_back({slot, sourceOf(found->getStream())});
        }
    }
    return inputs;
}

/// Where m_numbers has the corner whose index record begins at entry `record`.
std::size_t CornerValues::findPlace(const std::vector<unsigned int>& indices, std::size_t record,
                                    const std::vector<Input>& inputs)
{
    for (const Input& input : inputs)
    {
        const std::size_t entry = record + input.slot;
        if (entry < indices.size() && indices[entry] < input.source.tuples)
        {
            return input.source.first + indices[entry];
        }
    }
    return 0;
}

unsigned int CornerValues::numberAt(std::size_t place)
{
    unsigned int& number = m_numbers[place];
    if (number == NO_NUMBER)
    {
        number = static_cast<unsigned int>(m_places.size());
        m_places.push_back(static_cast<unsigned int>(place));
        addValue(place);
    }
    return number;
}

void CornerValues::addValue(std::size_t place)
{
    const auto next =
        std::upper_bound(m_sources.begin(), m_sources.end(), place,
                         [](std::size_t p, const Source& source) { return p < source.first; });
    const float* floats = nullptr;
    std::size_t present = 0;
    if (next != m_sources.begin())
    {
        const Source& source = *std::prev(next);
        const auto stride = static_cast<std::size_t>(source.stream->getStride());
        floats = source.stream->getData().data() + (place - source.first) * stride;
        present = std::min(stride, m_width);
    }
    for (std::size_t i = 0; i < m_width; ++i)
    {
        m_values.push_back(i < present ? floats[i] : 0.0F);
    }
}
} // namespace velmoran::scene
