#include "scene/deform/Skin.h"

#include "scene/deform/Influences.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamList.h"

#include <algorithm>
#include <utility>

namespace velmoran::scene
{
namespace
{
void appendTo(std::vector<int>& joints, std::vector<float>& weights,
              const std::vector<Influence>& influences)
{
    for (const Influence& influence : influences)
    {
        joints.push_back(influence.joint);
        weights.push_back(influence.weight);
    }
}
} // namespace

Skin::Skin(const IGeometryPtr& sourceGeometry)
    : m_sourceGeometry(sourceGeometry), m_bindShapeMatrix(Eigen::Matrix4f::Identity())
{
}

Skin::~Skin() = default;

IGeometryPtr Skin::getSourceGeometry() const
{
    return m_sourceGeometry;
}

void Skin::setSourceGeometry(const IGeometryPtr& sourceGeometry)
{
    m_sourceGeometry = sourceGeometry;
}

const Eigen::Matrix4f& Skin::getBindShapeMatrix() const
{
    return m_bindShapeMatrix;
}

void Skin::setBindShapeMatrix(const Eigen::Matrix4f& matrix)
{
    m_bindShapeMatrix = matrix;
}

void Skin::setStreams(const std::vector<StreamPtr>& streams)
{
    std::vector<StreamPtr> kept(streams);
    kept.erase(std::remove(kept.begin(), kept.end(), nullptr), kept.end());
    m_streams.swap(kept);

    for (StreamPtr& input : m_inputs)
    {
        if (input && std::find(m_streams.begin(), m_streams.end(), input) == m_streams.end())
        {
            input = getStreamById(input->getID());
        }
    }
}

const std::vector<StreamPtr>& Skin::getStreams() const
{
    return m_streams;
}

StreamPtr Skin::getStreamById(const std::string& id) const
{
    const auto found = std::find_if(m_streams.begin(), m_streams.end(),
                                    [&id](const StreamPtr& s) { return s->getID() == id; });
    return found == m_streams.end() ? StreamPtr() : *found;
}

void Skin::setJointsInput(const std::string& semantic, const std::string& streamId)
{
    setInput(jointsInput(semantic), streamId);
}

StreamPtr Skin::getJointsInput(const std::string& semantic) const
{
    return getInput(jointsInput(semantic));
}

void Skin::setVertexWeightsInput(const std::string& semantic, const std::string& streamId)
{
    setInput(vertexWeightsInput(semantic), streamId);
}

StreamPtr Skin::getVertexWeightsInput(const std::string& semantic) const
{
    return getInput(vertexWeightsInput(semantic));
}

void Skin::replaceVertexWeightsStream(const std::string& semantic, const StreamPtr& stream)
{
    replaceStream(getVertexWeightsInput(semantic), stream);
}

void Skin::replaceStream(const StreamPtr& current, const StreamPtr& stream)
{
    const StreamPtr replaced = current; // the arguments may be entries that are overwritten
    const StreamPtr kept = stream;
    if (!kept || !replaceEntry(m_streams, replaced, kept))
    {
        return;
    }
    std::replace(std::begin(m_inputs), std::end(m_inputs), replaced, kept);
}

Skin::Binding Skin::getBinding() const
{
    return {m_bindShapeMatrix, m_streams, m_inputs};
}

void Skin::restoreBinding(Binding binding)
{
    m_bindShapeMatrix = binding.bindShapeMatrix;
    m_streams.swap(binding.streams);
    m_inputs.swap(binding.inputs);
}

const std::vector<unsigned int>& Skin::getVCount() const
{
    return m_vcount;
}

void Skin::setVCount(std::vector<unsigned int> vcount)
{
    m_vcount = std::move(vcount);
}

const std::vector<int>& Skin::getV() const
{
    return m_v;
}

void Skin::setV(std::vector<int> v)
{
    m_v = std::move(v);
}

void Skin::getVertexJointsAndWeights(int vertex, std::vector<int>& joints,
                                     std::vector<float>& weights) const
{
    std::vector<Influence> influences;
    appendInfluences(vertex, influences);
    appendTo(joints, weights, influences);
}

void Skin::calculateNewJointsAndWeights(int vertexA, int vertexB, std::vector<int>& joints,
                                        std::vector<float>& weights) const
{
    std::vector<Influence> influences;
    appendInfluences(vertexA, influences);
    appendInfluences(vertexB, influences);
    joinHalfway(influences);
    appendTo(joints, weights, influences);
}

void Skin::appendInfluences(int vertex, std::vector<Influence>& influences) const
{
    const StreamPtr& stream = m_inputs[WEIGHTS_WEIGHT];
    if (vertex < 0 || static_cast<std::size_t>(vertex) >= m_vcount.size() || !stream)
    {
        return;
    }
    const InfluenceLists lists{m_vcount, m_v, stream->getData()};
    std::size_t before = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(vertex); ++i)
    {
        before += lists.countAt(i, before);
    }
    lists.append(before, lists.countAt(static_cast<std::size_t>(vertex), before), influences);
}

Skin::Input Skin::jointsInput(const std::string& semantic)
{
    if (semantic == "JOINT")
    {
        return JOINTS_JOINT;
    }
    return semantic == "INV_BIND_MATRIX" ? JOINTS_INV_BIND_MATRIX : INPUT_COUNT;
}

Skin::Input Skin::vertexWeightsInput(const std::string& semantic)
{
    if (semantic == "JOINT")
    {
        return WEIGHTS_JOINT;
    }
    return semantic == "WEIGHT" ? WEIGHTS_WEIGHT : INPUT_COUNT;
}

StreamPtr Skin::getInput(Input input) const
{
    return input == INPUT_COUNT ? StreamPtr() : m_inputs[input];
}

void Skin::setInput(Input input, const std::string& streamId)
{
    const StreamPtr stream = getStreamById(streamId);
    if (stream && input != INPUT_COUNT)
    {
        m_inputs[input] = stream;
    }
}
} // namespace velmoran::scene
