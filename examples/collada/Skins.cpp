#include "examples/collada/Skins.h"

#include "examples/collada/Values.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

namespace velmoran::examples::collada
{
namespace
{
/// One index of an influence: its place in the document's record and its bounds.
struct Slot
{
    bool isGiven = false;
    std::uint64_t offset = 0;
    std::int64_t minimum = 0;
    std::int64_t limit = 0; ///< indices are below
};

/// Reads one `<skin>` into a skin.
class SkinReader
{
public:
    SkinReader(Document& document, Sources& sources, const pugi::xml_node& element,
               const scene::MeshPtr& mesh)
        : m_document(document),
          m_sources(sources),
          m_element(element),
          m_mesh(mesh),
          m_skin(boost::make_shared<scene::Skin>(mesh)),
          m_streams(sources.getStreamsIn(element))
    {
    }

    scene::SkinPtr read()
    {
        readBindShape();
        const pugi::xml_node joints = m_element.child("joints");
        const pugi::xml_node weights = m_element.child("vertex_weights");
        addForeignStreams(joints);
        addForeignStreams(weights);
        m_skin->setStreams(m_streams);
        readJoints(joints);
        if (weights)
        {
            readWeights(weights);
        }
        return m_skin;
    }

private:
    void readBindShape()
    {
        if (const pugi::xml_node element = m_element.child("bind_shape_matrix"))
        {
            const std::vector<float> values = readFloats(m_document, element, 16);
            using RowMajor = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;
            m_skin->setBindShapeMatrix(Eigen::Map<const RowMajor>(values.data()));
        }
    }

    /// Inputs may name sources that stand outside this skin.
    void addForeignStreams(const pugi::xml_node& parent)
    {
        for (const pugi::xml_node& input : parent.children("input"))
        {
            const scene::StreamPtr stream = m_sources.getInput(input);
            if (std::find(m_streams.begin(), m_streams.end(), stream) == m_streams.end())
            {
                m_streams.push_back(stream);
            }
        }
    }

    void readJoints(const pugi::xml_node& joints)
    {
        for (const pugi::xml_node& input : joints.children("input"))
        {
            m_skin->setJointsInput(getAttribute(input, "semantic"),
                                   m_sources.getInput(input)->getID());
        }
        const scene::StreamPtr names = m_skin->getJointsInput("JOINT");
        const scene::StreamPtr matrices = m_skin->getJointsInput("INV_BIND_MATRIX");
        if (!names || !matrices)
        {
            m_document.warn(m_element, std::string("it can't be skinned: its joints have no ") +
                                           (names ? "INV_BIND_MATRIX" : "JOINT") + " input");
        }
        checkNames(joints, names);
        if (matrices && matrices->getStride() != 16)
        {
            m_document.fail(joints, "its inverse bind matrices have " +
                                        std::to_string(matrices->getStride()) +
                                        " numbers instead of 16");
        }
        if (names && matrices && matrices->getCount() < names->getCount())
        {
            m_document.fail(joints, "it has " + std::to_string(matrices->getCount()) +
                                        " inverse bind matrices for " +
                                        std::to_string(names->getCount()) + " joints");
        }
    }

    void checkNames(const pugi::xml_node& parent, const scene::StreamPtr& names) const
    {
        if (names && names->getNameList().size() != static_cast<std::size_t>(names->getCount()))
        {
            m_document.fail(parent, "its JOINT input has " + std::to_string(names->getCount()) +
                                        " joints, but " +
                                        std::to_string(names->getNameList().size()) + " names");
        }
    }

    void readWeights(const pugi::xml_node& weights)
    {
        Slot joint;
        Slot weight;
        std::uint64_t width = 0;
        joint.minimum = -1;
        for (const pugi::xml_node& input : weights.children("input"))
        {
            const std::string semantic = getAttribute(input, "semantic");
            const scene::StreamPtr stream = m_sources.getInput(input);
            const std::uint64_t offset = requireCount(m_document, input, "offset");
            width = std::max(width, offset + 1);
            if (semantic == "JOINT" || semantic == "WEIGHT")
            {
                Slot& slot = semantic == "JOINT" ? joint : weight;
                slot.isGiven = true;
                slot.offset = offset;
                slot.limit = stream->getCount();
                m_skin->setVertexWeightsInput(semantic, stream->getID());
            }
        }
        if (!joint.isGiven || !weight.isGiven)
        {
            m_document.fail(weights, "it needs a JOINT and a WEIGHT input");
        }
        checkNames(weights, m_skin->getVertexWeightsInput("JOINT"));
        if (m_skin->getVertexWeightsInput("WEIGHT")->getStride() != 1)
        {
            m_document.fail(weights, "its WEIGHT input has more than one number for a weight");
        }
        const std::size_t influences = readVCount(weights);
        readInfluences(weights, joint, weight, width, influences);
    }

    /// Returns the number of influences of all vertices.
    std::size_t readVCount(const pugi::xml_node& weights)
    {
        std::vector<std::int32_t> counts;
        readIntegers(m_document, weights.child("vcount"), 0, counts);
        const std::optional<std::uint64_t> count = readCount(m_document, weights, "count");
        if (count && *count != counts.size())
        {
            m_document.fail(weights, "its count is " + std::to_string(*count) +
                                         ", but its vcount holds " + std::to_string(counts.size()));
        }
        const std::size_t vertices = countPositions();
        if (counts.size() != vertices)
        {
            m_document.warn(weights, "it has influences for " + std::to_string(counts.size()) +
                                         " vertices, but the mesh has " + std::to_string(vertices));
        }
        std::size_t sum = 0;
        for (const std::int32_t each : counts)
        {
            sum += static_cast<std::size_t>(each);
        }
        m_skin->setVCount(std::vector<unsigned int>(counts.begin(), counts.end()));
        return sum;
    }

    void readInfluences(const pugi::xml_node& weights, const Slot& joint, const Slot& weight,
                        std::uint64_t width, std::size_t influences)
    {
        const pugi::xml_node list = weights.child("v");
        std::vector<std::int32_t> entries;
        readIntegers(m_document, list, -1, entries);
        if (entries.size() % width != 0 || entries.size() / width != influences)
        {
            m_document.fail(weights, "its vcount asks for " + std::to_string(influences) +
                                         " influences of " + std::to_string(width) +
                                         " indices, but there are " +
                                         std::to_string(entries.size()) + " indices");
        }
        std::vector<int> v;
        v.reserve(2 * influences);
        for (std::size_t record = 0; record < entries.size(); record += width)
        {
            v.push_back(checkIndex(list, "joint", joint, entries[record + joint.offset]));
            v.push_back(checkIndex(list, "weight", weight, entries[record + weight.offset]));
        }
        m_skin->setV(std::move(v));
    }

    int checkIndex(const pugi::xml_node& list, const char* what, const Slot& slot,
                   std::int32_t index) const
    {
        if (index < slot.minimum || index >= slot.limit)
        {
            m_document.fail(list, std::string(what) + " index " + std::to_string(index) +
                                      " is out of range: there are " + std::to_string(slot.limit));
        }
        return index;
    }

    std::size_t countPositions() const
    {
        for (const scene::StreamMapping& mapping : m_mesh->getVertices())
        {
            if (mapping.getSemantic() == scene::POSITION)
            {
                return static_cast<std::size_t>(mapping.getStream()->getCount());
            }
        }
        return 0;
    }

    Document& m_document;
    Sources& m_sources;
    const pugi::xml_node m_element;
    const scene::MeshPtr m_mesh;
    const scene::SkinPtr m_skin;
    std::vector<scene::StreamPtr> m_streams;
};
} // namespace

scene::SkinPtr readSkin(Document& document, Sources& sources, const pugi::xml_node& skin,
                        const scene::MeshPtr& mesh)
{
    return SkinReader(document, sources, skin, mesh).read();
}
} // namespace velmoran::examples::collada
