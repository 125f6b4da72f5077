#include "scene/graph/TransformationSkew.h"

#include <boost/make_shared.hpp>

namespace velmoran::scene
{
TransformationSkew::TransformationSkew(float angle, const Vector3& rotation,
                                       const Vector3& translation)
    : m_angle(angle), m_rotation(rotation), m_translation(translation)
{
}

int TransformationSkew::getType() const
{
    return SKEW;
}

ITransformationPtr TransformationSkew::clone() const
{
    return boost::make_shared<TransformationSkew>(*this);
}

float TransformationSkew::getAngle() const
{
    return m_angle;
}

void TransformationSkew::setAngle(float angle)
{
    m_angle = angle;
    markUpdated();
}

const TransformationSkew::Vector3& TransformationSkew::getRotation() const
{
    return m_rotation;
}

void TransformationSkew::setRotation(const Vector3& rotation)
{
    m_rotation = rotation;
    markUpdated();
}

const TransformationSkew::Vector3& TransformationSkew::getTranslation() const
{
    return m_translation;
}

void TransformationSkew::setTranslation(const Vector3& translation)
{
    m_translation = translation;
    markUpdated();
}
} // namespace velmoran::scene
