#include "scene/geometry/VertexElement.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <memory>

namespace velmoran::scene
{
VertexElement::VertexElement(StreamSemantic meaning, int length, float* floats)
    : semantic(meaning), size(length), values(floats)
{
}

VertexElement::~VertexElement()
{
    delete[] values;
}

VertexElementPtr VertexElement::copyOf(StreamSemantic meaning, int length, const float* floats)
{
    std::unique_ptr<float[]> copy(new float[static_cast<std::size_t>(length)]);
    std::copy_n(floats, length, copy.get());
    const VertexElementPtr element = boost::make_shared<VertexElement>(meaning, length, copy.get());
    copy.release();
    return element;
}
} // namespace velmoran::scene
