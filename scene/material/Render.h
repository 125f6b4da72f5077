#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <list>
#include <string>

namespace velmoran::scene
{
/// One pass of drawing: the layers that a camera sees, drawn with a material.
///
/// Ownership: shares the node and the material; either may be empty.
/// Threads: never changes, so any thread may read it; what it shares has rules of its own.
class VELMORAN_SCENE_EXPORT Render
{
public:
    /// `layers` holds names of layers. Nothing is checked.
    Render(NodePtr cameraNode, std::list<std::string> layers, MaterialPtr material);

    const NodePtr& getCameraNode() const { return m_cameraNode; }
    const std::list<std::string>& getLayers() const { return m_layers; }
    const MaterialPtr& getMaterial() const { return m_material; }

private:
    NodePtr m_cameraNode;
    std::list<std::string> m_layers;
    MaterialPtr m_material;
};
} // namespace velmoran::scene
