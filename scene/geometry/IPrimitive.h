#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#include <vector>

namespace velmoran::scene
{
/// One face of a primitive with its assembled corners.
///
/// Faces are copies of what the streams hold: changing one changes no mesh and raises
///     nothing.
/// Threads: not locked. Reading from several threads at once is safe while nobody writes.
class VELMORAN_SCENE_EXPORT IPrimitive
{
public:
    /// A vector perpendicular to the face; its length is up to the kind of face.
    virtual Eigen::Vector3f getFaceNormal() const = 0;

    /// Moves the positions of all corners by `matrix`; other attributes stay.
    virtual void applyTransform(const Eigen::Matrix4f& matrix) = 0;

    /// The corners in order, shared with the face. Entries may be empty.
    virtual std::vector<VertexPtr> getVertexArray() const = 0;

    /// Whether `ray` meets the face, from either side and not behind its origin; its
    /// boundary counts. False for an empty handle.
    virtual bool intersects(const RayPtr& ray) const = 0;

    /// Whether the face meets the axis-aligned box between the corners `min` and `max`;
    /// the boundary of both counts.
    virtual bool intersects(const Eigen::Vector3f& min, const Eigen::Vector3f& max) const = 0;

    virtual ~IPrimitive();
};
} // namespace velmoran::scene
