#pragma once

#include "examples/generator/Body.h"

#include <string>

namespace velmoran::generator
{
/// The text of a document with a skinned figure, under the identifiers by which the
/// scene library knows an avatar: the node "human-template", the geometry
/// "human-template-lib" and the root joint "sacrum".
std::string makeAvatarDocument(const Body& body, const std::string& title);
} // namespace velmoran::generator
