#include "scene/deform/Skin.h"

#include "scene/geometry/Stream.h"

#include <algorithm>
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
    const StreamPtr current = getVertexWeightsInput(semantic);
    if (!stream || !current)
    {
        return;
    }
    *std::find(m_streams.begin(), m_streams.end(), current) = stream;
    std::replace(std::begin(m_inputs), std::end(m_inputs), current, stream);
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
