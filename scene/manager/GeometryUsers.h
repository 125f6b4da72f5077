#pragma once

#include "scene/Forward.h"

#include <set>

namespace velmoran::scene
{
/// What uses geometries in a scene, each once.
struct GeometryUsers
{
    explicit GeometryUsers(const SceneManager& scene);

    std::set<InstanceGeometryPtr> instances; ///< of nodes and of controller instances
    std::set<ControllerPtr> controllers;     ///< of the library and of controller instances
};
} // namespace velmoran::scene
