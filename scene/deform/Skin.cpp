#include "scene/deform/Skin.h"

#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamList.h"

#include <algorithm>
#include <map>
#include <utility>

namespace velmoran::scene
{
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
    const StreamPtr& stream = m_inputs[WEIGHTS_WEIGHT];
    if (vertex < 0 || static_cast<std::size_t>(vertex) >= m_vcount.size() || !stream)
    {
        return;
    }
    const std::size_t available = m_v.size() / 2; // influences that `v` has room for
    std::size_t first = 0;
    for (int i = 0; i < vertex; ++i)
    {
        first += std::min<std::size_t>(m_vcount[static_cast<std::size_t>(i)], available - first);
    }
    const std::size_t count =
        std::min<std::size_t>(m_vcount[static_cast<std::size_t>(vertex)], available - first);
    const std::vector<float>& values = stream->getData();
    for (std::size_t i = first; i < first + count; ++i)
    {
        const int weight = m_v[2 * i + 1];
        if (weight >= 0 && static_cast<std::size_t>(weight) < values.size())
        {
            joints.push_back(m_v[2 * i]);
            weights.push_back(values[static_cast<std::size_t>(weight)]);
        }
    }
}

void Skin::calculateNewJointsAndWeights(int vertexA, int vertexB, std::vector<int>& joints,
                                        std::vector<float>& weights) const
{
    std::vector<int> joined;
    std::vector<float> joinedWeights;
    getVertexJointsAndWeights(vertexA, joined, joinedWeights);
    getVertexJointsAndWeights(vertexB, joined, joinedWeights);

    std::map<int, float> sums; // in ascending order of the joints
    for (std::size_t i = 0; i < joined.size(); ++i)
    {
        sums[joined[i]] += joinedWeights[i];
    }
    for (const auto& [joint, sum] : sums)
    {
        joints.push_back(joint);
        weights.push_back(sum * 0.5F);
    }
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
