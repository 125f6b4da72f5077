#include "scene/animation/PoseLanes.h"

namespace velmoran::scene
{
/// The sine of angles from 0 to a quarter turn, to about 1.2e-7: the odd polynomial that
/// agrees with it at Chebyshev nodes.
inline PoseLanes::Lanes PoseLanes::sineOf(const Lanes& angle)
{
    const Lanes square = angle * angle;
    const Lanes tail =
        square * (square * (square * 2.63475521e-6F - 1.98227391e-4F) + 8.33324213e-3F) -
        0.16666666F;
    return angle + angle * square * tail;
}

void PoseLanes::compute(std::size_t count)
{
    const Lanes rest = 1.0F - m_u;
    const Lanes sineA = sineOf(rest * m_angle) * m_inverseSine;
    const Lanes sineB = sineOf(m_u * m_angle) * m_inverseSine;
    const auto isStraight = (m_inverseSine == 0.0F).eval();
    m_weightA = isStraight.select(rest, sineA);
    m_weightB = m_sign * isStraight.select(m_u, sineB);
    blend(count);
    writeRotations(count);
}

void PoseLanes::blend(std::size_t count)
{
    for (Eigen::Index i = 0; i < static_cast<Eigen::Index>(count); ++i)
    {
        const MatrixKey& a = *m_a[i];
        const MatrixKey& b = *m_b[i];
        const Eigen::Vector4f rotation = m_weightA[i] * a.rotation + m_weightB[i] * b.rotation;
        m_x[i] = rotation[0];
        m_y[i] = rotation[1];
        m_z[i] = rotation[2];
        m_w[i] = rotation[3];
        m_poses[i].matrix.col(3) = a.translation + m_u[i] * (b.translation - a.translation);
        m_poses[i].scale = a.scale + m_u[i] * (b.scale - a.scale);
    }
}

/// The matrices of the quaternions, which are as good as unit ones and normalised here.
void PoseLanes::writeRotations(std::size_t count)
{
    const Lanes twice = 2.0F / (m_x * m_x + m_y * m_y + m_z * m_z + m_w * m_w);
    const Lanes tx = twice * m_x;
    const Lanes ty = twice * m_y;
    const Lanes tz = twice * m_z;
    const Lanes xx = 1.0F - (ty * m_y + tz * m_z);
    const Lanes yy = 1.0F - (tx * m_x + tz * m_z);
    const Lanes zz = 1.0F - (tx * m_x + ty * m_y);
    const Lanes xy = ty * m_x - tz * m_w;
    const Lanes yx = ty * m_x + tz * m_w;
    const Lanes xz = tz * m_x + ty * m_w;
    const Lanes zx = tz * m_x - ty * m_w;
    const Lanes yz = tz * m_y - tx * m_w;
    const Lanes zy = tz * m_y + tx * m_w;
    for (Eigen::Index i = 0; i < static_cast<Eigen::Index>(count); ++i)
    {
        float* const columns = m_poses[i].matrix.data();
        columns[0] = xx[i];
        columns[1] = yx[i];
        columns[2] = zx[i];
        columns[3] = 0.0F;
        columns[4] = xy[i];
        columns[5] = yy[i];
        columns[6] = zy[i];
        columns[7] = 0.0F;
        columns[8] = xz[i];
        columns[9] = yz[i];
        columns[10] = zz[i];
        columns[11] = 0.0F;
        columns[15] = 1.0F;
    }
}
} // namespace velmoran::scene
