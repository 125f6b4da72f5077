#pragma once

#include "scene/Export.h"

#include <cstdint>
#include <string>

namespace velmoran::scene
{
/// What the tuples of a stream mean to the primitive that reads them.
///
/// The texture coordinate sets are consecutive: set n (0 to 7) is `TEXCOORD + n`.
enum StreamSemantic : std::int32_t
{
    VERTEX = 0, ///< stands for all streams of the mesh's vertices list at once
    POSITION,
    COLOR,
    TEXCOORD,
    TEXCOORD1,
    TEXCOORD2,
    TEXCOORD3,
    TEXCOORD4,
    TEXCOORD5,
    TEXCOORD6,
    TEXCOORD7,
    NORMAL,
    BINORMAL,
    TANGENT,
    INVALID
};

/// The semantic of an input's name; `INVALID` for every other text. Case counts.
/// "TEXCOORD0", "TEXBINORMAL" and "TEXTANGENT" are read too, but never written.
VELMORAN_SCENE_EXPORT StreamSemantic streamSemanticFromString(const std::string& name);

/// The input's name of a semantic; "INVALID" for everything outside the enumeration.
VELMORAN_SCENE_EXPORT std::string streamSemanticToString(StreamSemantic semantic);
} // namespace velmoran::scene
