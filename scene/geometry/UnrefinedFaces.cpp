#include "scene/geometry/UnrefinedFaces.h"

#include "scene/geometry/CornerValues.h"
#include "scene/geometry/MeshPrimitiveBase.h"

#include <algorithm>

namespace velmoran::scene
{
UnrefinedFaces::UnrefinedFaces(MeshPrimitiveBase& primitive)
    : m_primitive(primitive),
      m_inputs(primitive.getStreamMapping()),
      m_indices(primitive.getIndexStream()),
      m_step(primitive.getIndexStreamStride())
{
    const bool isShared = m_inputs.size() != m_step;
    findSlots(isShared);
    if (isShared)
    {
        const auto losesItsSlot = [this](const StreamMapping& input)
        {
            return input.getSemantic() != VERTEX && input.getOffset() >= 0 &&
                   std::count(m_slots.begin(), m_slots.end(),
                              static_cast<std::size_t>(input.getOffset())) != 0;
        };
        m_inputs.erase(std::remove_if(m_inputs.begin(), m_inputs.end(), losesItsSlot),
                       m_inputs.end());
    }
}

void UnrefinedFaces::findSlots(bool isShared)
{
    for (std::size_t i = 0; i < m_inputs.size(); ++i)
    {
        const int offset = m_inputs[i].getOffset();
        const std::size_t slot = !isShared     ? i
                                 : offset >= 0 ? static_cast<std::size_t>(offset)
                                               : m_step;
        if (m_inputs[i].getSemantic() == VERTEX && slot < m_step &&
            std::count(m_slots.begin(), m_slots.end(), slot) == 0)
        {
            m_slots.push_back(slot);
        }
    }
}

void UnrefinedFaces::appendCorners(const StreamPtr& positions, CornerValues& corners)
{
    changeIndices([&](unsigned int tuple)
                  { return corners.appendTuple(positions, tuple) ? tuple : NOWHERE; });
}

void UnrefinedFaces::publish(const StreamPtr& vertices)
{
    for (StreamMapping& input : m_inputs)
    {
        if (input.getSemantic() == VERTEX)
        {
            input.setStream(vertices);
        }
    }
    m_primitive.setFaces(std::move(m_inputs), std::move(m_indices));
}
} // namespace velmoran::scene
