#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/IPrimitive.h"

#include <Eigen/Core>

#include <array>
#include <vector>

namespace velmoran::scene
{
/// A face of three corners, with its positions and edges kept at hand.
///
/// Cache: normal and bounds come from the positions that the corners had when the
///     triangle was made, transformed or told to `updateCache`.
/// Ownership: shares its vertices with whoever else holds them, copies included.
class VELMORAN_SCENE_EXPORT Triangle : public IPrimitive
{
public:
    /// A triangle of these corners. An empty one counts as a vertex at the origin.
    Triangle(const VertexPtr& vertex1, const VertexPtr& vertex2, const VertexPtr& vertex3);

    ~Triangle() override;

    /// Copies share the vertices and have a cache of their own.
    Triangle(const Triangle& other);
    Triangle& operator=(const Triangle& other);

    /// The cross product of the unit vectors along the edges from the first corner to
    /// the second and third. Not normalised: its length is the sine of the angle at the
    /// first corner.
    Eigen::Vector3f getFaceNormal() const override;

    /// Moves the corners' positions by `matrix`, as points and without a division by w,
    /// and updates the cache. A vertex that is two corners at once moves once.
    void applyTransform(const Eigen::Matrix4f& matrix) override;

    /// The three corners in order; an entry is empty where none was given.
    std::vector<VertexPtr> getVertexArray() const override;

    /// @name Tests
    /// Both are closed: what touches the boundary meets it, also where coordinates must be rounded,
    /// so that a ray through an edge of two triangles never slips between them. Rounding makes a
    /// gap count as touching only around 1e-15 of the size. A triangle whose positions lie exactly
    /// on one line has no area and meets nothing, nor does one with a coordinate that is not
    /// finite.
    /// @{

    /// Möller and Trumbore's test (1997), from either side and not behind the origin. False
    /// for an empty handle, a ray without direction or within the triangle's plane, and
    /// coordinates that are not finite.
    bool intersects(const RayPtr& ray) const override;

    /// Akenine-Möller's separating-axis test (2001). False when `min` is above `max` on any
    /// axis and for coordinates that are not finite.
    bool intersects(const Eigen::Vector3f& min, const Eigen::Vector3f& max) const override;

    /// @}

    /// The positions of the corners in order, as the cache holds them.
    const std::array<Eigen::Vector3f, 3>& getPositions() const;

    /// Corner 0, 1 or 2; empty for any other index, and when none was given.
    VertexPtr getVertexAt(unsigned int index) const;

    /// Reads the positions again. An edge without length gets 0.001 added to its x, so
    /// that a degenerate triangle has some finite face normal.
    void updateCache();

    /// Writes "Triangle:", a line end and the positions of the corners to standard
    /// output, without a line end.
    void print() const;

private:
    std::array<VertexPtr, 3> m_vertices;
    std::array<Eigen::Vector3f, 3> m_positions;
    Eigen::Vector3f m_edge1; ///< first to second corner
    Eigen::Vector3f m_edge2; ///< first to third corner
    Eigen::Vector3f m_edge3; ///< third to second corner
};
} // namespace velmoran::scene
