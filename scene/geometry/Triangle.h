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

    Triangle(const Triangle& other);
    Triangle& operator=(const Triangle& other);

    /// The cross product of the unit vectors along the edges from the first corner to
    /// the second and third. Not normalised: its length is the sine of the angle at the
    /// first corner.
    Eigen::Vector3f getFaceNormal() const override;

    /// Moves the corners' positions by `matrix`, as points and without a division by w,
    /// and updates the cache. A vertex that is two corners at once moves once.
    void applyTransform(const Eigen::Matrix4f& matrix) override;

    std::vector<VertexPtr> getVertexArray() const override;

    /// Corner 0, 1 or 2; empty for any other index.
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
