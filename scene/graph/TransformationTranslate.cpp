#include "scene/graph/TransformationTranslate.h"

#include <boost/make_shared.hpp>

namespace velmoran::scene
{
TransformationTranslate::TransformationTranslate() = default;

TransformationTranslate::TransformationTranslate(const Vector3& translation)
    : m_translation(translation)
{
}

int TransformationTranslate::getType() const
{
    return TRANSLATE;
}

ITransformationPtr TransformationTranslate::clone() const
{
    return boost::make_shared<TransformationTranslate>(*this);
}

const TransformationTranslate::Vector3& TransformationTranslate::getTranslation() const
{
    return m_translation;
}

void TransformationTranslate::setTranslation(const Vector3& translation)
{
    m_translation = translation;
    markUpdated();
}
} // namespace velmoran::scene
