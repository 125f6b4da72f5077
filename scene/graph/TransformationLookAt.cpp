#include "scene/graph/TransformationLookAt.h"

#include <boost/make_shared.hpp>

namespace velmoran::scene
{
TransformationLookAt::TransformationLookAt(const Vector3& eyePosition, const Vector3& interestPoint,
                                           const Vector3& upAxis)
    : m_eyePosition(eyePosition), m_interestPoint(interestPoint), m_upAxis(upAxis)
{
}

int TransformationLookAt::getType() const
{
    return LOOKAT;
}

ITransformationPtr TransformationLookAt::clone() const
{
    return boost::make_shared<TransformationLookAt>(*this);
}

const TransformationLookAt::Vector3& TransformationLookAt::getEyePosition() const
{
    return m_eyePosition;
}

void TransformationLookAt::setEyePosition(const Vector3& eyePosition)
{
    m_eyePosition = eyePosition;
    markUpdated();
}

const TransformationLookAt::Vector3& TransformationLookAt::getInterestPoint() const
{
    return m_interestPoint;
}

void TransformationLookAt::setInterestPoint(const Vector3& interestPoint)
{
    m_interestPoint = interestPoint;
    markUpdated();
}

const TransformationLookAt::Vector3& TransformationLookAt::getUpAxis() const
{
    return m_upAxis;
}

void TransformationLookAt::setUpAxis(const Vector3& upAxis)
{
    m_upAxis = upAxis;
    markUpdated();
}
} // namespace velmoran::scene
