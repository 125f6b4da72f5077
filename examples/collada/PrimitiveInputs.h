#pragma once

#include "examples/collada/Sources.h"
#include "scene/geometry/StreamMapping.h"

#include <cstdint>
#include <unordered_set>
#include <vector>

namespace velmoran::examples::collada
{
/// A mesh while it is filled.
struct MeshDraft
{
    pugi::xml_node element; ///< `<mesh>`
    scene::MeshPtr mesh;
    scene::StreamPtr vertexStream; ///< stands for `<vertices>`, holds nothing
    std::uint64_t vertexCount = 0; ///< tuples that all streams of `<vertices>` have
    std::unordered_set<const scene::Stream*> streams; ///< those of the mesh

    /// Makes `stream` one of the mesh's streams if it is not; sources of other meshes
    /// may be referred to as well.
    void addStream(const scene::StreamPtr& stream);
};

/// The inputs of one primitive element and the layout of its `<p>`.
///
/// A record of the document takes `width` entries, one for each offset up to the
/// highest; inputs may share one, and offsets may have none. The library reads an input
/// at its place among the inputs, so its records have one entry for each input: inputs
/// stand in ascending order of their offsets, as slots 0, 1, 2, ..., and those that
/// share an offset get a copy of its index each. Fails when sharing makes records of
/// more than 32 entries.
///
/// Texture coordinates get the semantic `TEXCOORD` + set when the sets of the primitive
/// are distinct and from 0 to 7 (a missing set is 0), else `TEXCOORD` + 0, 1, 2, ... in
/// the order of appearance; `INVALID` beyond the eighth.
struct PrimitiveInputs
{
    /// One entry of the library's record.
    struct Slot
    {
        std::uint64_t offset = 0; ///< in the document's record
        std::uint64_t limit = 0;  ///< indices are below
    };

    std::vector<scene::StreamMapping> mappings; ///< by slot
    std::vector<Slot> slots;
    std::uint64_t width = 0;
    bool hasVertices = false; ///< there is a VERTEX input
};

/// Reads the `<input>` of `primitive`. Fails at sources and vertices that are not there.
PrimitiveInputs readInputs(Document& document, Sources& sources, const pugi::xml_node& primitive,
                           MeshDraft& mesh);
} // namespace velmoran::examples::collada
