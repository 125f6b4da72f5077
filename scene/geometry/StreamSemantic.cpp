#include "scene/geometry/StreamSemantic.h"

namespace velmoran::scene
{
namespace
{
struct SemanticName
{
    const char* name;
    StreamSemantic semantic;
};

// The first name of a semantic is the one that is written.
constexpr SemanticName semanticNames[] = {
    {"VERTEX", VERTEX},       {"POSITION", POSITION},   {"COLOR", COLOR},
    {"NORMAL", NORMAL},       {"BINORMAL", BINORMAL},   {"TEXBINORMAL", BINORMAL},
    {"TANGENT", TANGENT},     {"TEXTANGENT", TANGENT},  {"TEXCOORD", TEXCOORD},
    {"TEXCOORD0", TEXCOORD},  {"TEXCOORD1", TEXCOORD1}, {"TEXCOORD2", TEXCOORD2},
    {"TEXCOORD3", TEXCOORD3}, {"TEXCOORD4", TEXCOORD4}, {"TEXCOORD5", TEXCOORD5},
    {"TEXCOORD6", TEXCOORD6}, {"TEXCOORD7", TEXCOORD7},
};
} // namespace

StreamSemantic streamSemanticFromString(const std::string& name)
{
    for (const SemanticName& entry : semanticNames)
    {
        if (name == entry.name)
        {
            return entry.semantic;
        }
    }
    return INVALID;
}

std::string streamSemanticToString(StreamSemantic semantic)
{
    for (const SemanticName& entry : semanticNames)
    {
        if (semantic == entry.semantic)
        {
            return entry.name;
        }
    }
    return "INVALID";
}
} // namespace velmoran::scene
