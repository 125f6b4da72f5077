#include "examples/collada/Primitives.h"

#include "examples/collada/Values.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

#include <boost/make_shared.hpp>

#include <string_view>
#include <utility>

namespace velmoran::examples::collada
{
namespace
{
/// What a primitive element says, before it is split into triangles.
struct Faces
{
    std::vector<std::int32_t> entries; ///< of all `<p>`, one after the other
    std::vector<std::int32_t> sizes;   ///< corners of each face, in order
    bool areStrips = false;
};

/// Reads the faces of one primitive element and splits them.
class FaceReader
{
public:
    FaceReader(Document& document, const pugi::xml_node& primitive, const PrimitiveInputs& inputs)
        : m_document(document), m_primitive(primitive), m_inputs(inputs)
    {
    }

    std::vector<unsigned int> readTriangles()
    {
        const std::string_view kind = m_primitive.name();
        if (kind == "triangles")
        {
            readTriangleFaces();
        }
        else if (kind == "polylist")
        {
            readPolylistFaces();
        }
        else
        {
            readFacePerList();
            m_faces.areStrips = kind == "tristrips";
        }
        checkCount();
        checkIndices();
        return split();
    }

private:
    /// Appends a `<p>` and returns its number of corners.
    std::size_t readList(const pugi::xml_node& list)
    {
        const std::size_t before = m_faces.entries.size();
        readIntegers(m_document, list, 0, m_faces.entries);
        const std::size_t entries = m_faces.entries.size() - before;
        if (entries % m_inputs.width != 0)
        {
            m_document.fail(list, "it holds " + std::to_string(entries) +
                                      " indices, which do not make whole corners of " +
                                      std::to_string(m_inputs.width));
        }
        return entries / m_inputs.width;
    }

    std::size_t readAllLists()
    {
        std::size_t corners = 0;
        for (const pugi::xml_node& list : m_primitive.children("p"))
        {
            corners += readList(list);
        }
        return corners;
    }

    void readTriangleFaces()
    {
        const std::size_t corners = readAllLists();
        if (corners % 3 != 0)
        {
            m_document.fail(m_primitive, "its indices make " + std::to_string(corners) +
                                             " corners, which are not whole triangles");
        }
        m_faces.sizes.assign(corners / 3, 3);
    }

    void readPolylistFaces()
    {
        readIntegers(m_document, m_primitive.child("vcount"), 0, m_faces.sizes);
        const std::size_t corners = readAllLists();
        std::uint64_t wanted = 0;
        for (const std::int32_t size : m_faces.sizes)
        {
            wanted += static_cast<std::uint64_t>(size);
        }
        if (wanted != corners)
        {
            m_document.fail(m_primitive, "its vcount asks for " + std::to_string(wanted) +
                                             " corners, but its indices make " +
                                             std::to_string(corners));
        }
    }

    /// Polygons, fans and strips: a list for each.
    void readFacePerList()
    {
        for (const pugi::xml_node& child : m_primitive.children())
        {
            const std::string_view name = child.name();
            if (name == "p" || name == "ph")
            {
                const pugi::xml_node list = name == "p" ? child : child.child("p");
                m_faces.sizes.push_back(static_cast<std::int32_t>(readList(list)));
            }
        }
        if (m_primitive.child("ph"))
        {
            m_document.warn(m_primitive, "the holes of its polygons are left out");
        }
    }

    void checkCount() const
    {
        const std::optional<std::uint64_t> count = readCount(m_document, m_primitive, "count");
        if (count && *count != m_faces.sizes.size())
        {
            m_document.fail(m_primitive, "its count is " + std::to_string(*count) +
                                             ", but it holds " +
                                             std::to_string(m_faces.sizes.size()));
        }
    }

    void checkIndices() const
    {
        for (std::size_t record = 0; record < m_faces.entries.size(); record += m_inputs.width)
        {
            for (const PrimitiveInputs::Slot& slot : m_inputs.slots)
            {
                const std::int32_t index = m_faces.entries[record + slot.offset];
                if (static_cast<std::uint64_t>(index) >= slot.limit)
                {
                    m_document.fail(m_primitive, "index " + std::to_string(index) + " at offset " +
                                                     std::to_string(slot.offset) + " of corner " +
                                                     std::to_string(record / m_inputs.width) +
                                                     " is out of range: there are " +
                                                     std::to_string(slot.limit) + " tuples");
                }
            }
        }
    }

    std::vector<unsigned int> split()
    {
        std::size_t left = 0;
        std::size_t first = 0;
        m_triangles.reserve(m_faces.sizes.size() * 3 * m_inputs.slots.size());
        for (const std::int32_t size : m_faces.sizes)
        {
            const std::size_t end = first + static_cast<std::size_t>(size);
            for (std::size_t i = first + 1; i + 1 < end; ++i)
            {
                // Every second triangle of a strip is turned, so that all face one way.
                const bool turned = m_faces.areStrips && (i - first) % 2 == 0;
                const std::size_t start = m_faces.areStrips ? i - 1 : first;
                addCorner(turned ? i : start);
                addCorner(turned ? start : i);
                addCorner(i + 1);
            }
            left += size < 3 ? 1 : 0;
            first = end;
        }
        if (left > 0)
        {
            m_document.warn(m_primitive, std::to_string(left) +
                                             " faces of less than three corners are left out");
        }
        return std::move(m_triangles);
    }

    void addCorner(std::size_t corner)
    {
        for (const PrimitiveInputs::Slot& slot : m_inputs.slots)
        {
            const std::int32_t index = m_faces.entries[corner * m_inputs.width + slot.offset];
            m_triangles.push_back(static_cast<unsigned int>(index));
        }
    }

    Document& m_document;
    const pugi::xml_node m_primitive;
    const PrimitiveInputs& m_inputs;
    Faces m_faces;
    std::vector<unsigned int> m_triangles;
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

void readPrimitive(Document& document, Sources& sources, const pugi::xml_node& element,
                   MeshDraft& draft)
{
    const PrimitiveInputs inputs = readInputs(document, sources, element, draft);
    if (!inputs.hasVertices)
    {
        document.warn(element, "left out: it has no VERTEX input");
        return;
    }
    std::vector<unsigned int> indices = FaceReader(document, element, inputs).readTriangles();
    const auto primitive = boost::make_shared<scene::TriangleMeshPrimitive>(
        draft.mesh, inputs.mappings, std::move(indices));
    const std::string symbol = getAttribute(element, "material");
    if (!symbol.empty())
    {
        primitive->setMaterialSymbol(symbol);
    }
    draft.mesh->addPrimitive(primitive);
}
} // namespace

void readPrimitives(Document& document, Sources& sources, MeshDraft& draft)
{
    for (const pugi::xml_node& element : draft.element.children())
    {
        switch (getKind(element.name()))
        {
        case Kind::NONE:
            break;
        case Kind::FACES:
            readPrimitive(document, sources, element, draft);
            break;
        case Kind::UNSUPPORTED:
            document.warn(element, "left out: a mesh holds triangles only");
            break;
        }
    }
}
} // namespace velmoran::examples::collada
