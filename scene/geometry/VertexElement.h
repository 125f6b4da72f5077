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
struct VELMORAN_SCENE_EXPORT VertexElement
{
    /// Takes over `floats`, an array of `length` floats from array new.
    VertexElement(StreamSemantic meaning, int length, float* floats);

    ~VertexElement();

    VertexElement(const VertexElement&) = delete;
    VertexElement& operator=(const VertexElement&) = delete;

    /// An element with a copy of `length` floats, which is not below 0.
    static VertexElementPtr copyOf(StreamSemantic meaning, int length, const float* floats);

    StreamSemantic semantic;
    int size;
    float* values;
};
} // namespace velmoran::scene
