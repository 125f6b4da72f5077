#pragma once

#include "examples/collada/NodeDrafts.h"

namespace velmoran::examples::collada
{
/// Fails when an `<instance_node>` leads back to a node that it stands in, and when the
/// copies that instances of nodes ask for would be too many: a million nodes or four
/// million parts of nodes, where instances without bindings count with the symbols
/// that they bind by default. Linear in what the document writes.
void checkExpansion(const Document& document, const NodeDrafts& nodes, const Meshes& meshes);
} // namespace velmoran::examples::collada
