#pragma once

#include "examples/collada/PrimitiveInputs.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoran::examples::collada
{
/// The faces of one primitive element as the document writes them.
struct Faces
{
    std::vector<std::int32_t> entries; ///< of all `<p>`, one after the other
    std::vector<std::int32_t> sizes;   ///< corners of each face, in order
};

/// Reads the faces of a `<triangles>`, `<polylist>`, `<polygons>`, `<trifans>` or
/// `<tristrips>`; of the latter two each fan or strip is one face. Holes are left out with a
/// warning. Fails at indices that are not there and at counts that differ from what is there.
Faces readFaces(Document& document, const pugi::xml_node& primitive, const PrimitiveInputs& inputs);
} // namespace velmoran::examples::collada
