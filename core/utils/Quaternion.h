#pragma once

#include "core/Export.h"
#include "core/utils/Vector.h"

#include <array>

namespace velmoran::core::utils
{
/// A rotation as a unit quaternion.
///
/// Computed in double precision, so that a rotation followed by its inverse
/// gives back the floats it started from, but for their last digits.
class VELMORAN_CORE_EXPORT Quaternion
{
public:
    /// Rotation by `angle` degrees about `axis`, counter-clockwise seen from the
    /// axis' tip. The axis need not have unit length; a zero axis, or a value that
    /// is not finite, gives no rotation.
    Quaternion(const Vector<float, 3>& axis, float angle);

    /// Hamilton's product: the rotation that turns by `other` first, then by this.
    Quaternion operator*(const Quaternion& other) const;

    /// Unit axis x, y, z and angle in degrees, in [0, 360].
    /// No rotation (to within 1e-10 degrees, whole turns included) gives the axis
    /// (1, 0, 0) and the angle 0.
    std::array<float, 4> toAxisAngle() const;

private:
    Quaternion(double w, double x, double y, double z);

    double m_w;
    double m_x;
    double m_y;
    double m_z;
};
} // namespace velmoran::core::utils
