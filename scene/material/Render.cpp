#include "scene/material/Render.h"

#include <utility>

namespace velmoran::scene
{
Render::Render(NodePtr cameraNode, std::list<std::string> layers, MaterialPtr material)
    : m_cameraNode(std::move(cameraNode)),
      m_layers(std::move(layers)),
      m_material(std::move(material))
{
}
} // namespace velmoran::scene
