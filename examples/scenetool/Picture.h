#pragma once

#include "examples/scenetool/Canvas.h"
#include "scene/Forward.h"

namespace velmoran::examples
{
/// Scenes side by side from left to right, each seen from its front, without perspective and
/// all at the same scale and height.
///
/// All triangles are drawn in the diffuse colours of their materials, lit by their own
/// normals. The viewer looks along -Z with Y or X up, along +Y with Z up; that is from where
/// COLLADA has the front.
class Picture
{
public:
    /// Adds a scene as it is now, its skins as their joints stand.
    void add(const scene::SceneManagerPtr& scene);

    /// How many scenes with a triangle to see there are. Others take no room.
    std::size_t getCount() const;

    /// Draws the scenes, of which there is one at least: 800 pixels high, less when that would
    /// be wider than 4000.
    Image render() const;

private:
    /// In the space of the viewer: x to the right, y up, z toward the viewer.
    struct Triangle
    {
        std::array<Eigen::Vector3d, 3> corners;
        Eigen::Vector3d colour;
    };

    struct Model
    {
        std::vector<Triangle> triangles;
        Eigen::Vector2d low; ///< of all corners
        Eigen::Vector2d high;
    };

    class Collector;

    std::vector<Model> m_models;
};
} // namespace velmoran::examples
