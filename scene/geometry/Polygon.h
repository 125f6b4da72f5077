#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/geometry/IPrimitive.h"

#include <vector>

namespace velmoran::scene
{
/// A face of any number of corners. It only holds them: what is asked of its shape is not
/// answered, which each such call writes to standard output.
///
/// Ownership: shares its vertices with whoever else holds them, copies included.
class VELMORAN_SCENE_EXPORT Polygon : public IPrimitive
{
public:
    /// A polygon without corners.
    Polygon();

    ~Polygon() override;

    /// Copies share the vertices.
    Polygon(const Polygon& other);
    Polygon& operator=(const Polygon& other);

    /// Appends a corner; an empty handle is kept like any other.
    void addVertex(const VertexPtr& vertex);

    unsigned int getVertexCount() const;

    /// Corner `index`; empty when there is none.
    VertexPtr getVertexAt(unsigned int index) const;

    /// The corners in order. Entries may be empty.
    const std::vector<VertexPtr>& getVertices() const;
    std::vector<VertexPtr> getVertexArray() const override;

    /// (0, 0, 0).
    Eigen::Vector3f getFaceNormal() const override;

    /// Changes nothing.
    void applyTransform(const Eigen::Matrix4f& matrix) override;

    /// False.
    bool intersects(const RayPtr& ray) const override;
    bool intersects(const Eigen::Vector3f& min, const Eigen::Vector3f& max) const override;

    /// Writes nothing.
    void print() const;

private:
    std::vector<VertexPtr> m_vertices;
};
} // namespace velmoran::scene
