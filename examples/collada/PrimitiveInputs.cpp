#include "examples/collada/PrimitiveInputs.h"

#include "examples/collada/Values.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"

#include <algorithm>
#include <set>

namespace velmoran::examples::collada
{
namespace
{
constexpr std::uint64_t MAX_SETS = 8;
constexpr std::size_t MAX_SHARING_INPUTS = 32;

struct Input
{
    pugi::xml_node element;
    std::uint64_t offset = 0;
    scene::StreamSemantic semantic = scene::INVALID;
    scene::StreamPtr stream;
    std::uint64_t limit = 0;
};

bool isTextureInput(const Input& input)
{
    return getAttribute(input.element, "semantic") == "TEXCOORD";
}

Input readInput(const Document& document, Sources& sources, const pugi::xml_node& element,
                MeshDraft& mesh)
{
    Input input;
    input.element = element;
    input.offset = requireCount(document, element, "offset");
    input.semantic = scene::streamSemanticFromString(getAttribute(element, "semantic"));
    if (input.semantic != scene::VERTEX)
    {
        input.stream = sources.getInput(element);
        input.limit = static_cast<std::uint64_t>(input.stream->getCount());
        mesh.addStream(input.stream);
        return input;
    }
    const pugi::xml_node vertices = document.resolveAttribute(element, "source", {"vertices"});
    if (vertices.parent() != mesh.element)
    {
        document.fail(element, "refers to the vertices of another mesh");
    }
    input.stream = mesh.vertexStream;
    input.limit = mesh.vertexCount;
    return input;
}

/// The set of each texture input, in their order, if they can be told apart by it.
std::vector<std::uint64_t> readSets(const Document& document, const std::vector<Input>& inputs)
{
    std::vector<std::uint64_t> sets;
    for (const Input& input : inputs)
    {
        if (isTextureInput(input))
        {
            sets.push_back(readCount(document, input.element, "set").value_or(0));
        }
    }
    const bool inRange =
        std::all_of(sets.begin(), sets.end(), [](std::uint64_t set) { return set < MAX_SETS; });
    const bool distinct = std::set<std::uint64_t>(sets.begin(), sets.end()).size() == sets.size();
    if (!inRange || !distinct)
    {
        for (std::size_t i = 0; i < sets.size(); ++i)
        {
            sets[i] = i;
        }
    }
    return sets;
}

void assignTextureSets(Document& document, std::vector<Input>& inputs)
{
    const std::vector<std::uint64_t> sets = readSets(document, inputs);
    std::size_t next = 0;
    for (Input& input : inputs)
    {
        if (!isTextureInput(input))
        {
            continue;
        }
        const std::uint64_t set = sets[next++];
        input.semantic = scene::INVALID;
        if (set < MAX_SETS)
        {
            input.semantic = static_cast<scene::StreamSemantic>(scene::TEXCOORD +
                                                                static_cast<std::int32_t>(set));
        }
        else if (set == MAX_SETS)
        {
            document.warn(input.element, "a mesh has eight sets of texture coordinates at most; "
                                         "this and further ones get no meaning");
        }
    }
}

/// Sharing must not make records many times as wide as what the document writes. The
/// inputs come in the order of their offsets.
void checkSharing(const Document& document, const pugi::xml_node& primitive,
                  const std::vector<Input>& inputs)
{
    const bool isShared = std::adjacent_find(inputs.begin(), inputs.end(),
                                             [](const Input& a, const Input& b)
                                             { return a.offset == b.offset; }) != inputs.end();
    if (isShared && inputs.size() > MAX_SHARING_INPUTS)
    {
        document.fail(primitive, "it has " + std::to_string(inputs.size()) +
                                     " inputs that share offsets; that is too much");
    }
}
} // namespace

void MeshDraft::addStream(const scene::StreamPtr& stream)
{
    if (streams.insert(stream.get()).second)
    {
        mesh->addStream(stream);
    }
}

PrimitiveInputs readInputs(Document& document, Sources& sources, const pugi::xml_node& primitive,
                           MeshDraft& mesh)
{
    std::vector<Input> inputs;
    for (const pugi::xml_node& element : primitive.children("input"))
    {
        inputs.push_back(readInput(document, sources, element, mesh));
    }
    assignTextureSets(document, inputs);
    std::stable_sort(inputs.begin(), inputs.end(),
                     [](const Input& a, const Input& b) { return a.offset < b.offset; });

    checkSharing(document, primitive, inputs);

    PrimitiveInputs result;
    for (const Input& input : inputs)
    {
        result.mappings.emplace_back(input.semantic, input.stream,
                                     static_cast<int>(result.slots.size()));
        result.slots.push_back({input.offset, input.limit});
        result.width = input.offset + 1;
        result.hasVertices = result.hasVertices || input.semantic == scene::VERTEX;
    }
    return result;
}
} // namespace velmoran::examples::collada
