#include "examples/collada/Faces.h"

#include "examples/collada/Values.h"

#include <string_view>
#include <utility>

namespace velmoran::examples::collada
{
namespace
{
/// Reads the faces of one primitive element; see `readFaces`.
class FaceReader
{
public:
    FaceReader(Document& document, const pugi::xml_node& primitive, const PrimitiveInputs& inputs)
        : m_document(document), m_primitive(primitive), m_inputs(inputs)
    {
    }

    Faces read()
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
        }
        checkCount();
        checkIndices();
        return std::move(m_faces);
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

    Document& m_document;
    const pugi::xml_node m_primitive;
    const PrimitiveInputs& m_inputs;
    Faces m_faces;
};
} // namespace

Faces readFaces(Document& document, const pugi::xml_node& primitive, const PrimitiveInputs& inputs)
{
    return FaceReader(document, primitive, inputs).read();
}
} // namespace velmoran::examples::collada
