#pragma once

#include "scene/Forward.h"

#include <set>

namespace velmoran::scene
{
/// The meshes and skins that may hold streams in a scene: those of the geometry library, of
/// the instances in the node tree and of the controllers library.
class StreamUsers
{
public:
    explicit StreamUsers(const SceneManager& scene);

    /// Puts `stream` in the place of `current` in all of them. Neither is empty. Needs no
    /// memory.
    void replace(const StreamPtr& current, const StreamPtr& stream) const;

private:
    std::set<IGeometryPtr> m_geometries;
    std::set<SkinPtr> m_skins;
};
} // namespace velmoran::scene
