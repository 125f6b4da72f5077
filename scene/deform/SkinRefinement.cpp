#include "scene/deform/SkinRefinement.h"

#include "scene/deform/Controller.h"
#include "scene/deform/Influences.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/DistinctValues.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"

#include <cstddef>
#include <utility>

namespace velmoran::scene
{
namespace
{
/// The influences of any vertex, in constant time.
class InfluenceReader
{
public:
    explicit InfluenceReader(const InfluenceLists& lists)
        : m_lists(lists), m_starts(lists.vcount.size() + 1)
    {
        for (std::size_t i = 0; i < lists.vcount.size(); ++i)
        {
            m_starts[i + 1] = m_starts[i] + lists.countAt(i, m_starts[i]);
        }
    }

    void append(int vertex, std::vector<Influence>& influences) const
    {
        const auto i = static_cast<std::size_t>(vertex); // large if it was negative
        if (i < m_starts.size() - 1)
        {
            m_lists.append(m_starts[i], m_starts[i + 1] - m_starts[i], influences);
        }
    }

private:
    InfluenceLists m_lists;
    std::vector<std::size_t> m_starts; ///< of each vertex, and the end
};
} // namespace

SkinRefinement::SkinRefinement(const ControllerPtr& controller, const Mesh& mesh)
{
    const SkinPtr skin = controller ? controller->getSkin() : SkinPtr();
    const IGeometryPtr source = skin ? skin->getSourceGeometry() : IGeometryPtr();
    if (!source || source.get() == &mesh)
    {
        m_skin = skin;
    }
}

bool SkinRefinement::isNeeded() const
{
    return m_skin != nullptr;
}

void SkinRefinement::compute(const std::vector<VertexOrigin>& vertices)
{
    const StreamPtr stream = m_skin->getVertexWeightsInput("WEIGHT");
    const std::vector<float> noWeights;
    const InfluenceReader reader(
        {m_skin->getVCount(), m_skin->getV(), stream ? stream->getData() : noWeights});
    std::vector<float> weights;
    std::vector<Influence> influences; // of one vertex
    m_vcount.reserve(vertices.size());
    for (const VertexOrigin& vertex : vertices)
    {
        influences.clear();
        reader.append(vertex.a, influences);
        if (vertex.isHalfway)
        {
            reader.append(vertex.b, influences);
            joinHalfway(influences);
        }
        m_vcount.push_back(static_cast<unsigned int>(influences.size()));
        for (const Influence& influence : influences)
        {
            m_v.insert(m_v.end(), {influence.joint, 0});
            weights.push_back(influence.weight);
        }
    }
    const DistinctValues distinct("VMR_SUBDIVIDE_WEIGHT_STREAM", 1, std::move(weights));
    for (std::size_t i = 0; 2 * i < m_v.size(); ++i)
    {
        m_v[2 * i + 1] = distinct.getTuple(i);
    }
    m_weights = distinct.stream;
}

void SkinRefinement::apply()
{
    m_skin->replaceVertexWeightsStream("WEIGHT", m_weights);
    m_skin->setVCount(std::move(m_vcount));
    m_skin->setV(std::move(m_v));
}
} // namespace velmoran::scene
