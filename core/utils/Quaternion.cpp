#include "core/utils/Quaternion.h"

#include <cmath>

namespace velmoran::core::utils
{
namespace
{
constexpr double RADIANS_PER_DEGREE = 3.14159265358979323846 / 180.0;

// Sine of half the smallest angle that is told from no rotation.
constexpr double NO_ROTATION = 1e-12;

double length(double x, double y, double z)
{
    return std::sqrt(x * x + y * y + z * z);
}
} // namespace

Quaternion::Quaternion(double w, double x, double y, double z) : m_w(w), m_x(x), m_y(y), m_z(z) {}

Quaternion::Quaternion(const Vector<float, 3>& axis, float angle) : Quaternion(1.0, 0.0, 0.0, 0.0)
{
    // Squares of floats neither overflow nor vanish in double precision.
    const double norm = length(axis[0], axis[1], axis[2]);
    if (!(norm > 0.0) || !std::isfinite(norm) || !std::isfinite(angle))
    {
        return;
    }
    const double half = 0.5 * RADIANS_PER_DEGREE * angle;
    const double scale = std::sin(half) / norm;
    m_w = std::cos(half);
    m_x = scale * axis[0];
    m_y = scale * axis[1];
    m_z = scale * axis[2];
}

Quaternion Quaternion::operator*(const Quaternion& other) const
{
    return Quaternion(m_w * other.m_w - m_x * other.m_x - m_y * other.m_y - m_z * other.m_z,
                      m_w * other.m_x + m_x * other.m_w + m_y * other.m_z - m_z * other.m_y,
                      m_w * other.m_y - m_x * other.m_z + m_y * other.m_w + m_z * other.m_x,
                      m_w * other.m_z + m_x * other.m_y - m_y * other.m_x + m_z * other.m_w);
}

std::array<float, 4> Quaternion::toAxisAngle() const
{
    const double sine = length(m_x, m_y, m_z);
    if (sine < NO_ROTATION)
    {
        return {1.0f, 0.0f, 0.0f, 0.0f};
    }
    // The two-argument arc tangent is exact near 0 and 360 degrees, where the arc
    // cosine of m_w is not, and leaves a product's rounded length out of account.
    const double angle = 2.0 * std::atan2(sine, m_w) / RADIANS_PER_DEGREE;
    return {static_cast<float>(m_x / sine), static_cast<float>(m_y / sine),
            static_cast<float>(m_z / sine), static_cast<float>(angle)};
}
} // namespace velmoran::core::utils
