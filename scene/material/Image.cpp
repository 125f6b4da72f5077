#include "scene/material/Image.h"

#include <utility>

namespace velmoran::scene
{
Image::Image(std::string id, std::string fileName, std::string name)
    : m_id(std::move(id)), m_name(std::move(name)), m_fileName(std::move(fileName))
{
}
} // namespace velmoran::scene
