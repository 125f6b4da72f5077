#include "scene/graph/TransformationScale.h"

#include <boost/make_shared.hpp>

namespace velmoran::scene
{
TransformationScale::TransformationScale() : TransformationScale(1.0F, 1.0F, 1.0F) {}

TransformationScale::TransformationScale(const Vector3& scale) : m_scale(scale) {}

TransformationScale::TransformationScale(float x, float y, float z) : m_scale(x, y, z) {}

int TransformationScale::getType() const
{
    return SCALE;
}

ITransformationPtr TransformationScale::clone() const
{
    return boost::make_shared<TransformationScale>(*this);
}

const TransformationScale::Vector3& TransformationScale::getScale() const
{
    return m_scale;
}

float TransformationScale::getScaleX() const
{
    return m_scale[0];
}

float TransformationScale::getScaleY() const
{
    return m_scale[1];
}

float TransformationScale::getScaleZ() const
{
    return m_scale[2];
}

void TransformationScale::setScale(const Vector3& scale)
{
    m_scale = scale;
    markUpdated();
}

void TransformationScale::setScaleX(float x)
{
    setFactor(0, x);
}

void TransformationScale::setScaleY(float y)
{
    setFactor(1, y);
}

void TransformationScale::setScaleZ(float z)
{
    setFactor(2, z);
}

void TransformationScale::setFactor(std::size_t axis, float factor)
{
    m_scale[axis] = factor;
    markUpdated();
}
} // namespace velmoran::scene
