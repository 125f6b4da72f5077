#include "scene/material/Effect.h"

#include <utility>

namespace velmoran::scene
{
Effect::Effect(std::string id, std::string fileName, std::string name)
    : m_id(std::move(id)), m_name(std::move(name)), m_fileName(std::move(fileName))
{
}
} // namespace velmoran::scene
