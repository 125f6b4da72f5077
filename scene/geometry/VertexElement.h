#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/StreamSemantic.h"

namespace velmoran::scene
{
/// One attribute of a vertex: `size` floats that mean `semantic`.
///
/// Ownership: owns `values`, which comes from array new and is freed with the
///     element. Copies of a vertex share its elements.
/// Threads: not locked; whoever writes to `values` makes sure that nobody reads.
struct VELMORAN_SCENE_EXPORT VertexElement
{
    /// Takes over `floats`, an array of `length` floats from array new; null if there are
    /// none. Neither is checked.
    VertexElement(StreamSemantic meaning, int length, float* floats);

    ~VertexElement();

    VertexElement(const VertexElement&) = delete;
    VertexElement& operator=(const VertexElement&) = delete;

    /// An element with a copy of `length` floats, which is not below 0; `floats` may be
    /// null when it is 0.
    static VertexElementPtr copyOf(StreamSemantic meaning, int length, const float* floats);

    StreamSemantic semantic; ///< what the floats mean
    int size;                ///< number of floats
    float* values;           ///< owned; to be edited in place, not replaced
};
} // namespace velmoran::scene
