#pragma once

#include "scene/Forward.h"

namespace velmoran::scene
{
/// Applies one element of a transformation list to the T, R and S of `node`;
/// see `Node::addTransformation`. Look-at and skew change nothing.
void foldTransformation(Node& node, const ITransformation& transformation);
} // namespace velmoran::scene
