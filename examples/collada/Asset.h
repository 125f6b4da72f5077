#pragma once

#include "examples/collada/Document.h"
#include "scene/manager/UpAxis.h"

namespace velmoran::examples::collada
{
/// The settings that hold for a whole document.
struct Asset
{
    scene::UpAxis upAxis = scene::Y_UP;
    float meter = 1.0F; ///< metres in one unit
};

/// Reads the document's own `<asset>`. What is missing, not an axis or not above 0
/// gives the defaults, the latter with a warning.
Asset readAsset(Document& document);
} // namespace velmoran::examples::collada
