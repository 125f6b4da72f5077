#pragma once

#include "scene/geometry/Mesh.h"

#include <string>

namespace velmoran::scene
{
/// A mesh that stands for the convex hull of another geometry, as physics shapes use it.
///
/// The hull is not computed: the mesh carries streams and primitives of its own, and may
///     be linked to the geometry whose hull it is. While it is linked, it tells that
///     geometry's bounds instead of its own.
/// Ownership: shares the linked geometry.
class VELMORAN_SCENE_EXPORT ConvexMesh : public Mesh
{
public:
    /// An empty mesh of type `CONVEX_MESH` without a link.
    ConvexMesh(std::string id, std::string name);

    ~ConvexMesh() override;

    /// Links the geometry whose hull this is. An empty handle is ignored, and so is a
    /// geometry whose own links lead back to this mesh.
    void setConvexHullOf(const IGeometryPtr& geometry);

    /// The linked geometry; empty at the start.
    const IGeometryPtr& getConvexHullOf() const;

    /// A plain mesh of type `MESH`, without the link: its bounds are its own.
    IGeometryPtr clone() const override;

    Eigen::Vector3f getBVCenter() override;
    Eigen::Vector3f getBVMin() override;
    Eigen::Vector3f getBVMax() override;

private:
    IGeometryPtr m_convexHullOf;
};
} // namespace velmoran::scene
