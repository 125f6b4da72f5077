#pragma once

#include "examples/collada/Document.h"
#include "scene/Forward.h"

namespace velmoran::examples::collada
{
/// Whether a child of a `<node>` is a transformation.
bool isTransformation(const pugi::xml_node& element);

/// The transformation that a child of a `<node>` describes, with its SID; empty when
/// the child is none. Fails unless it holds as many numbers as its kind has. Axes of
/// rotation are normalised.
scene::ITransformationPtr readTransformation(const Document& document,
                                             const pugi::xml_node& element);
} // namespace velmoran::examples::collada
