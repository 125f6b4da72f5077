#include "examples/collada/Primitives.h"

#include "examples/collada/Faces.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <string_view>
#include <utility>

namespace velmoran::examples::collada
{
namespace
{
/// Makes the library's index records of faces, without those of less than three corners.
class RecordWriter
{
public:
    RecordWriter(const Faces& faces, const PrimitiveInputs& inputs)
        : m_faces(faces), m_inputs(inputs), m_corners(faces.entries.size() / inputs.width)
    {
    }

    /// As triangles: fan by fan, corners 0, i, i + 1, or strip by strip.
    void split(bool areStrips)
    {
        const std::size_t ends = std::min(m_corners, 2 * m_faces.sizes.size());
        m_records.reserve((m_corners - ends) * 3 * m_inputs.slots.size());
        visitFaces(
            [&](std::size_t first, std::size_t end)
            {
                for (std::size_t i = first + 1; i + 1 < end; ++i)
                {
                    // Every second triangle of a strip is turned, so that all face one way.
                    const bool turned = areStrips && (i - first) % 2 == 0;
                    const std::size_t start = areStrips ? i - 1 : first;
                    addCorner(turned ? i : start);
                    addCorner(turned ? start : i);
                    addCorner(i + 1);
                }
            });
    }

    /// As they are.
    void keep()
    {
        m_counts.reserve(m_faces.sizes.size());
        m_records.reserve(m_corners * m_inputs.slots.size());
        visitFaces(
            [&](std::size_t first, std::size_t end)
            {
                m_counts.push_back(static_cast<unsigned int>(end - first));
                for (std::size_t i = first; i < end; ++i)
                {
                    addCorner(i);
                }
            });
    }

    std::vector<unsigned int> takeRecords() { return std::move(m_records); }

    /// Corners of each face that is kept as it is.
    const std::vector<unsigned int>& getCounts() const { return m_counts; }

    /// The number of faces without an area.
    std::size_t getLeftOut() const { return m_leftOut; }

private:
    /// Calls `visit` with the first corner of each face and the one behind its last.
    template <typename Visit>
    void visitFaces(const Visit& visit)
    {
        std::size_t first = 0;
        for (const std::int32_t size : m_faces.sizes)
        {
            const std::size_t end = first + static_cast<std::size_t>(size);
            if (size < 3)
            {
                ++m_leftOut;
            }
            else
            {
                visit(first, end);
            }
            first = end;
        }
    }

    void addCorner(std::size_t corner)
    {
        for (const PrimitiveInputs::Slot& slot : m_inputs.slots)
        {
            const std::int32_t index = m_faces.entries[corner * m_inputs.width + slot.offset];
            m_records.push_back(static_cast<unsigned int>(index));
        }
    }

    const Faces& m_faces;
    const PrimitiveInputs& m_inputs;
    const std::size_t m_corners; ///< of all faces
    std::vector<unsigned int> m_records;
    std::vector<unsigned int> m_counts;
    std::size_t m_leftOut = 0;
};

enum class Kind
{
    NONE, ///< not a primitive
    FACES,
    UNSUPPORTED
};

Kind getKind(std::string_view name)
{
    constexpr std::string_view FACES[] = {"triangles", "polylist", "polygons", "trifans",
                                          "tristrips"};
    constexpr std::string_view OTHERS[] = {"source", "vertices", "extra", ""};
    for (const std::string_view face : FACES)
    {
        if (name == face)
        {
            return Kind::FACES;
        }
    }
    for (const std::string_view other : OTHERS)
    {
        if (name == other)
        {
            return Kind::NONE;
        }
    }
    return Kind::UNSUPPORTED;
}

using PrimitivePtr = boost::shared_ptr<scene::MeshPrimitiveBase>;

PrimitivePtr makePrimitive(Document& document, const pugi::xml_node& element,
                           const PrimitiveInputs& inputs, const MeshDraft& draft,
                           bool keepsPolygons)
{
    const std::string_view kind = element.name();
    const Faces faces = readFaces(document, element, inputs);
    RecordWriter writer(faces, inputs);
    PrimitivePtr primitive;
    if (keepsPolygons && (kind == "polylist" || kind == "polygons"))
    {
        writer.keep();
        primitive = boost::make_shared<scene::PolygonMeshPrimitive>(
            draft.mesh, inputs.mappings, writer.takeRecords(), writer.getCounts());
    }
    else
    {
        writer.split(kind == "tristrips");
        primitive = boost::make_shared<scene::TriangleMeshPrimitive>(draft.mesh, inputs.mappings,
                                                                     writer.takeRecords());
    }
    if (writer.getLeftOut() > 0)
    {
        document.warn(element, std::to_string(writer.getLeftOut()) +
                                   " faces of less than three corners are left out");
    }
    return primitive;
}

void readPrimitive(Document& document, Sources& sources, const pugi::xml_node& element,
                   MeshDraft& draft, bool keepsPolygons)
{
    const PrimitiveInputs inputs = readInputs(document, sources, element, draft);
    if (!inputs.hasVertices)
    {
        document.warn(element, "left out: it has no VERTEX input");
        return;
    }
    const PrimitivePtr primitive = makePrimitive(document, element, inputs, draft, keepsPolygons);
    const std::string symbol = getAttribute(element, "material");
    if (!symbol.empty())
    {
        primitive->setMaterialSymbol(symbol);
    }
    draft.mesh->addPrimitive(primitive);
}
} // namespace

void readPrimitives(Document& document, Sources& sources, MeshDraft& draft, bool keepsPolygons)
{
    for (const pugi::xml_node& element : draft.element.children())
    {
        switch (getKind(element.name()))
        {
        case Kind::NONE:
            break;
        case Kind::FACES:
            readPrimitive(document, sources, element, draft, keepsPolygons);
            break;
        case Kind::UNSUPPORTED:
            document.warn(element, "left out: a mesh holds triangles and polygons only");
            break;
        }
    }
}
} // namespace velmoran::examples::collada
