#pragma once

#include "scene/animation/EvaluatedPose.h"

#include <Eigen/Core>

#include <cstddef>

namespace velmoran::scene
{
/// A matrix key, split, and the way to the next one. A cache line.
struct MatrixKey
{
    Eigen::Vector4f rotation;    ///< unit quaternion x, y, z, w
    Eigen::Vector4f translation; ///< x, y, z, 0
    Eigen::Vector4f scale;       ///< lengths of the matrix's columns, then 0
    float angle = 0.0F;          ///< between this rotation and the next one
    float inverseSine = 0.0F;    ///< of that angle; 0 where plain weights are taken
    float sign = 1.0F;           ///< of the next rotation, -1 when that is the shorter way
};

/// Interpolates some pairs of keys side by side, a lane each.
///
/// Rotations by spherical linear interpolation (K. Shoemake, "Animating Rotation with
/// Quaternion Curves", 1985), translations and scales linearly. Rotations are right to
/// some 3e-7.
class PoseLanes
{
public:
    static constexpr std::size_t COUNT = 8;

    /// Puts the moment `u`, from 0 at `a` to below 1 at `b`, the key after `a`, into a lane. With
    /// u = 0 the pose is `a`, and `b` may be any key.
    void set(std::size_t lane, const MatrixKey& a, const MatrixKey& b, float u)
    {
        m_a[lane] = &a;
        m_b[lane] = &b;
        const auto entry = static_cast<Eigen::Index>(lane);
        m_u[entry] = u;
        m_angle[entry] = a.angle;
        m_inverseSine[entry] = a.inverseSine;
        m_sign[entry] = a.sign;
    }

    /// Interpolates the first `count` lanes, which have been set.
    void compute(std::size_t count);

    /// The pose of a lane; it may hold a NaN or an infinity where the keys do.
    EvaluatedPose& pose(std::size_t lane) { return m_poses[lane]; }

private:
    using Lanes = Eigen::Array<float, COUNT, 1>;

    static Lanes sineOf(const Lanes& angle);
    void blend(std::size_t count);
    void writeRotations(std::size_t count);

    const MatrixKey* m_a[COUNT];
    const MatrixKey* m_b[COUNT];
    Lanes m_u = Lanes::Zero();
    Lanes m_angle = Lanes::Zero();
    Lanes m_inverseSine = Lanes::Zero();
    Lanes m_sign = Lanes::Zero();
    Lanes m_weightA;
    Lanes m_weightB;
    Lanes m_x = Lanes::Zero(); ///< the blended quaternions
    Lanes m_y = Lanes::Zero();
    Lanes m_z = Lanes::Zero();
    Lanes m_w = Lanes::Ones();
    EvaluatedPose m_poses[COUNT];
};
} // namespace velmoran::scene
