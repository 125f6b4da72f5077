#include "scene/graph/TransformationRotate.h"

#include "core/utils/Matrix.h"
#include "core/utils/Quaternion.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace velmoran::scene
{
using core::utils::Matrix;
using core::utils::Quaternion;

TransformationRotate::TransformationRotate() = default;

TransformationRotate::TransformationRotate(const Vector3& axis, float angle)
    : m_rotationAxis(axis), m_angle(angle)
{
}

int TransformationRotate::getType() const
{
    return ROTATE;
}

ITransformationPtr TransformationRotate::clone() const
{
    return boost::make_shared<TransformationRotate>(*this);
}

const TransformationRotate::Vector3& TransformationRotate::getRotationAxis() const
{
    return m_rotationAxis;
}

void TransformationRotate::setRotationAxis(const Vector3& axis)
{
    setRotationAxis(axis[0], axis[1], axis[2]);
}

void TransformationRotate::setRotationAxis(float x, float y, float z)
{
    // In double precision the squares of finite floats neither overflow nor vanish.
    const double length = std::hypot(double(x), double(y), double(z));
    const double divisor = length > 0.0 && std::isfinite(length) ? length : 1.0;
    m_rotationAxis =
        Vector3(float(double(x) / divisor), float(double(y) / divisor), float(double(z) / divisor));
    markUpdated();
}

float TransformationRotate::getAngle() const
{
    return m_angle;
}

void TransformationRotate::setAngle(float angle)
{
    m_angle = angle;
    markUpdated();
}

void TransformationRotate::setFromMatrix(const Matrix& matrix)
{
    const auto m = [&matrix](int i) { return double(matrix[i]); };

    // Rounding may take the cosine a little out of the range of acos.
    const double cosine = std::clamp((m(0) + m(5) + m(10) - 1.0) * 0.5, -1.0, 1.0);
    m_angle = float(std::acos(cosine));

    const double sine = std::sin(double(m_angle));
    if (sine == 0.0)
    {
        m_rotationAxis = Vector3(1.0F, 0.0F, 0.0F);
    }
    else
    {
        const double k = 0.5 / sine;
        m_rotationAxis =
            Vector3(float((m(6) - m(9)) * k), float((m(8) - m(2)) * k), float((m(1) - m(4)) * k));
    }
    markUpdated();
}

void TransformationRotate::rotateBy(const Vector3& axis, float angle)
{
    const Quaternion stored(m_rotationAxis, m_angle);
    const Quaternion turn(Vector3(-axis[0], -axis[1], -axis[2]), angle);
    const auto axisAngle = (stored * turn).toAxisAngle();
    m_rotationAxis = Vector3(axisAngle[0], axisAngle[1], axisAngle[2]);
    m_angle = axisAngle[3];
    markUpdated();
}
} // namespace velmoran::scene
