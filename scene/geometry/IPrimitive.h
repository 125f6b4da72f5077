#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#include <vector>

namespace velmoran::scene
{
/// One face of a primitive with its assembled corners.
///
/// Faces are copies of what the streams hold: changing one changes no mesh.
class VELMORAN_SCENE_EXPORT IPrimitive
{
public:
    virtual Eigen::Vector3f getFaceNormal() const = 0;

    /// Moves the positions of all corners by `matrix`; other attributes stay.
    virtual void applyTransform(const Eigen::Matrix4f& matrix) = 0;

    /// The corners in order.
    virtual std::vector<VertexPtr> getVertexArray() const = 0;

    virtual ~IPrimitive();
};
} // namespace velmoran::scene
