#include "scene/geometry/MeshPrimitiveBase.h"

#include "core/logger/BasicDecorator.h"
#include "core/logger/ConsoleWriter.h"
#include "core/logger/FileWriterFactory.h"
#include "core/utils/AllOrNothing.h"
#include "scene/geometry/CornerWriter.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamList.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace velmoran::scene
{
namespace
{
// All kinds of primitives report it in these words.
constexpr char missingVertexInput[] =
    " [ERROR] Found a TriangleMeshPrimitive with no VERTEX stream mapping.";
} // namespace

MeshPrimitiveBase::MeshPrimitiveBase(const MeshPtr& mesh, std::vector<StreamMapping> mapping)
    : MeshPrimitiveBase(mesh, std::move(mapping), {})
{
}

MeshPrimitiveBase::MeshPrimitiveBase(const MeshPtr& mesh, std::vector<StreamMapping> mapping,
                                     std::vector<unsigned int> indices)
    : m_mesh(mesh),
      m_streamMapping(std::move(mapping)),
      m_indexStream(std::move(indices)),
      m_type(TRIANGLES),
      m_materialSymbol("velmoran_material"),
      m_bvMin(3, 0.0f),
      m_bvMax(3, 0.0f)
{
    initLogger();
}

MeshPrimitiveBase::~MeshPrimitiveBase() = default;

void MeshPrimitiveBase::initLogger()
{
    using namespace core::logger;
    const IWriterPtr fileWriter =
        FileWriterFactory::getInstance()->getFileWriter("SceneManager.log");
    const IWriterPtr consoleWriter = boost::make_shared<ConsoleWriter>();
    for (const IWriterPtr& writer : {fileWriter, consoleWriter})
    {
        writer->setDecorator(boost::make_shared<BasicDecorator>());
        m_logger.addWriter(writer);
    }
}

const MeshPtr& MeshPrimitiveBase::getMesh() const
{
    return m_mesh;
}

const std::vector<unsigned int>& MeshPrimitiveBase::getIndexStream() const
{
    return m_indexStream;
}

unsigned int MeshPrimitiveBase::getIndexStreamStride() const
{
    return calculateIndexStreamStride();
}

const std::vector<StreamMapping>& MeshPrimitiveBase::getStreamMapping() const
{
    return m_streamMapping;
}

IMeshPrimitive::Type MeshPrimitiveBase::getType() const
{
    return m_type;
}

std::vector<float> MeshPrimitiveBase::getBVMin() const
{
    return m_bvMin;
}

std::vector<float> MeshPrimitiveBase::getBVMax() const
{
    return m_bvMax;
}

std::vector<float> MeshPrimitiveBase::getBVCenter() const
{
    std::vector<float> center(m_bvMin);
    for (std::size_t i = 0; i < center.size(); ++i)
    {
        center[i] += (m_bvMax[i] - m_bvMin[i]) * 0.5f;
    }
    return center;
}

void MeshPrimitiveBase::setMaterialSymbol(std::string symbol)
{
    m_materialSymbol = std::move(symbol);
}

std::string MeshPrimitiveBase::getMaterialSymbol() const
{
    return m_materialSymbol;
}

unsigned int MeshPrimitiveBase::calculateIndexStreamStride() const
{
    unsigned int distinct = 0;
    for (auto mapping = m_streamMapping.begin(); mapping != m_streamMapping.end(); ++mapping)
    {
        const bool isRepeated = std::any_of(m_streamMapping.begin(), mapping,
                                            [&mapping](const StreamMapping& earlier) {
                                                return earlier.getOffset() == mapping->getOffset();
                                            });
        distinct += isRepeated ? 0 : 1;
    }
    return distinct;
}

StreamPtr MeshPrimitiveBase::getStreamBySemantic(StreamSemantic semantic) const
{
    const StreamMapping* mapping = findStreamMapping(m_streamMapping, semantic);
    if (mapping == nullptr)
    {
        mapping = findVerticesMapping(semantic);
    }
    return mapping != nullptr ? mapping->getStream() : StreamPtr();
}

const StreamMapping* MeshPrimitiveBase::findVerticesMapping(StreamSemantic semantic) const
{
    return m_mesh ? findStreamMapping(m_mesh->getVertices(), semantic) : nullptr;
}

int MeshPrimitiveBase::getStreamMappingIndexForSemantic(StreamSemantic semantic) const
{
    return locate(semantic, false);
}

int MeshPrimitiveBase::getStreamMappingOffsetForSemantic(StreamSemantic semantic) const
{
    return locate(semantic, true);
}

int MeshPrimitiveBase::locate(StreamSemantic semantic, bool wantsOffset) const
{
    int vertexPlace = -1;
    for (std::size_t i = 0; i < m_streamMapping.size(); ++i)
    {
        const StreamMapping& mapping = m_streamMapping[i];
        const int place = wantsOffset ? mapping.getOffset() : static_cast<int>(i);
        if (mapping.getSemantic() == semantic && semantic != scene::INVALID)
        {
            return place;
        }
        if (mapping.getSemantic() == VERTEX)
        {
            vertexPlace = place;
        }
    }
    if (vertexPlace == -1)
    {
        m_logger << missingVertexInput;
        return -1;
    }
    return findVerticesMapping(semantic) != nullptr ? vertexPlace : -1;
}

void MeshPrimitiveBase::replaceStream(const StreamPtr& current, const StreamPtr& stream)
{
    if (current)
    {
        replaceInMappings(m_streamMapping, StreamPtr(current), StreamPtr(stream));
    }
}

void MeshPrimitiveBase::setFaces(std::vector<StreamMapping> mapping,
                                 std::vector<unsigned int> indices)
{
    m_streamMapping = std::move(mapping);
    m_indexStream = std::move(indices);
}

/// The streams and inputs that are made for a primitive, removed unless they are kept.
class MeshPrimitiveBase::NewStreams
{
public:
    explicit NewStreams(MeshPrimitiveBase& primitive)
        : m_primitive(primitive), m_inputs(primitive.m_streamMapping.size())
    {
        const Mesh* const mesh = primitive.m_mesh.get();
        m_streams = mesh != nullptr ? mesh->getStreams().size() : 0;
        m_vertices = mesh != nullptr ? mesh->getVertices().size() : 0;
    }

    ~NewStreams()
    {
        if (!m_isKept && m_primitive.m_mesh)
        {
            std::vector<StreamMapping>& inputs = m_primitive.m_streamMapping;
            inputs.erase(inputs.begin() + static_cast<std::ptrdiff_t>(m_inputs), inputs.end());
            m_primitive.m_mesh->cutStreamsTo(m_streams, m_vertices);
        }
    }

    NewStreams(const NewStreams&) = delete;
    NewStreams& operator=(const NewStreams&) = delete;

    void keep() { m_isKept = true; }

private:
    MeshPrimitiveBase& m_primitive;
    std::size_t m_inputs;
    std::size_t m_streams = 0;
    std::size_t m_vertices = 0;
    bool m_isKept = false;
};

StreamPtr MeshPrimitiveBase::validateStreamStateForVertexElement(const VertexElementPtr& element,
                                                                 bool shareEqualValues)
{
    if (!element || element->semantic == scene::INVALID)
    {
        return StreamPtr();
    }
    const StreamSemantic semantic = element->semantic;
    const bool isPresent = findStreamMapping(m_streamMapping, semantic) != nullptr ||
                           findVerticesMapping(semantic) != nullptr;
    if (isPresent || !m_mesh)
    {
        return getStreamBySemantic(semantic);
    }
    NewStreams made(*this);
    if (semantic == POSITION)
    {
        StreamPtr positions = createPositionStream(element->size, shareEqualValues);
        made.keep();
        return positions;
    }
    StreamPtr stream =
        createStream(streamSemanticToString(semantic) + "_stream", element->size, shareEqualValues);
    const int slot = static_cast<int>(calculateIndexStreamStride());
    m_streamMapping.emplace_back(semantic, stream, slot);
    made.keep();
    return stream;
}

StreamPtr MeshPrimitiveBase::createStream(const std::string& id, int stride, bool shareEqualValues)
{
    const StreamPtr stream = boost::make_shared<Stream>(id, stride, !shareEqualValues);
    m_mesh->addStream(stream);
    return stream;
}

StreamPtr MeshPrimitiveBase::createPositionStream(int stride, bool shareEqualValues)
{
    const StreamPtr positions = createStream("position_stream", stride, shareEqualValues);
    m_mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    if (findStreamMapping(m_streamMapping, VERTEX) == nullptr)
    {
        // Stands for the vertices list as a whole and gets no data of its own.
        const StreamPtr vertices =
            boost::make_shared<Stream>(m_mesh->getVerticesID(), stride, !shareEqualValues);
        m_streamMapping.emplace_back(VERTEX, vertices, 0);
    }
    return positions;
}

VertexPtr MeshPrimitiveBase::assembleVertexFromVertices(unsigned int vertexIndex,
                                                        const VertexPtr& into) const
{
    if (!into || !m_mesh)
    {
        return into;
    }
    for (const StreamMapping& mapping : m_mesh->getVertices())
    {
        addTuple(mapping, vertexIndex, *into);
    }
    return into;
}

void MeshPrimitiveBase::addTuple(const StreamMapping& mapping, std::size_t index, Vertex& into)
{
    const StreamSemantic semantic = mapping.getSemantic();
    const StreamPtr& stream = mapping.getStream();
    if (semantic <= VERTEX || semantic >= scene::INVALID || !stream || stream->getStride() <= 0)
    {
        return;
    }
    const std::vector<float>& data = stream->getData();
    const auto width = static_cast<std::size_t>(stream->getStride());
    if (index < data.size() / width)
    {
        into.addElement(VertexElement::copyOf(semantic, stream->getStride(), &data[index * width]),
                        true);
    }
}

bool MeshPrimitiveBase::appendCorners(const std::vector<VertexPtr>& corners, bool shareEqualValues)
{
    CornerWriter writer(*this, m_bvMin, m_bvMax);
    NewStreams made(*this);
    const bool isPrepared = writer.prepareStreams(corners, shareEqualValues);
    std::vector<unsigned int> record(calculateIndexStreamStride());
    core::utils::makeRoom(m_indexStream, corners.size() * record.size());
    made.keep(); // nothing fails from here on for want of memory
    if (!isPrepared)
    {
        return false;
    }
    for (const VertexPtr& corner : corners)
    {
        std::fill(record.begin(), record.end(), 0u);
        if (!writer.fillRecord(*corner, record))
        {
            m_logger << " [ERROR] Invalid stream mapping index for this vertex semantic.";
            return false;
        }
        m_indexStream.insert(m_indexStream.end(), record.begin(), record.end());
    }
    return true;
}
} // namespace velmoran::scene
