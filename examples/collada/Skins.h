#pragma once

#include "examples/collada/Sources.h"

namespace velmoran::examples::collada
{
/// The skin of `mesh` that a `<skin>` describes, with all its streams.
///
/// Influences are stored as joint and weight index, whatever the offsets in the
/// document. Fails at indices that are not there (-1, the bind shape, is one of the
/// joints), at counts that differ from what is there, at lists that don't hold what their
/// semantic says, and at missing inputs of influences. Warns when there are influences for
/// more or fewer vertices than the mesh has, and when an input of the joints is missing.
/// Joint names are those of the document; see `SkinBinder`.
scene::SkinPtr readSkin(Document& document, Sources& sources, const pugi::xml_node& skin,
                        const scene::MeshPtr& mesh);
} // namespace velmoran::examples::collada
