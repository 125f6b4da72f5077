#pragma once

#include "scene/deform/Skin.h"
#include "scene/geometry/Midpoints.h"
#include "tests/scene/geometry/GeometryBuilders.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace velmoran::scene
{
/// The refinement of triangles read one after the other as objects, every value of every corner
/// inserted for itself.
class PlainSubdivision
{
public:
    explicit PlainSubdivision(const Mesh& mesh, const Skin* skin = nullptr) : m_skin(skin)
    {
        for (const IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
        {
            const auto& base = dynamic_cast<const MeshPrimitiveBase&>(*primitive);
            m_hasNormals = base.getStreamBySemantic(NORMAL) != nullptr;
            m_hasCoordinates = base.getStreamBySemantic(TEXCOORD) != nullptr;
            indices.emplace_back();
            for (unsigned int i = 0; i < primitive->getCount(); ++i)
            {
                const IPrimitivePtr triangle = primitive->getPrimitiveAt(i);
                if (triangle)
                {
                    split(*primitive, i, triangle->getVertexArray());
                }
            }
        }
    }

    Stream positions{"VMR_SUBDIVIDE_POSITION_STREAM", 3, false};
    Stream normals{"VMR_SUBDIVIDE_NORMAL_STREAM", 3, false};
    Stream coordinates{"VMR_SUBDIVIDE_UV_STREAM", 2, false};
    Stream weights{"VMR_SUBDIVIDE_WEIGHT_STREAM", 1, false};
    std::vector<unsigned int> vcount;
    std::vector<int> v;

    /// Of each primitive: position, and normal and texture coordinate if it has them, of each
    /// corner.
    std::vector<std::vector<int>> indices;

private:
    using Floats = std::array<float, 3>;

    struct Corner
    {
        Floats position{};
        Floats normal{};
        Floats coordinate{};
        int tuple = -1; ///< of the position
        int other = -1; ///< of the other end, for a midpoint
        bool isMidpoint = false;
    };

    static Floats read(const VertexElementPtr& element)
    {
        const std::vector<float> values = valuesOf(element);
        Floats floats{};
        std::copy_n(values.begin(), std::min<std::size_t>(values.size(), 3), floats.begin());
        return floats;
    }

    /// The position tuple that a corner really has.
    static int findTuple(const IMeshPrimitive& primitive, std::size_t record, const Vertex& vertex)
    {
        const std::vector<unsigned int>& entries = primitive.getIndexStream();
        int found = -1;
        for (std::size_t i = 0; i < primitive.getStreamMapping().size(); ++i)
        {
            const bool isVertex = primitive.getStreamMapping()[i].getSemantic() == VERTEX;
            if (isVertex && record + i < entries.size() && vertex.getPosition())
            {
                found = static_cast<int>(entries[record + i]);
            }
        }
        return found;
    }

    void split(const IMeshPrimitive& primitive, unsigned int triangle,
               const std::vector<VertexPtr>& vertices)
    {
        std::array<Corner, 6> corners;
        for (std::size_t i = 0; i < 3; ++i)
        {
            const std::size_t record = (3 * triangle + i) * primitive.getStreamMapping().size();
            const Vertex& vertex = *vertices[i];
            corners[i].position = read(vertex.getPosition());
            corners[i].normal = read(vertex.getNormal());
            corners[i].coordinate = read(vertex.getTexCoord(0));
            corners[i].tuple = findTuple(primitive, record, vertex);
        }
        for (std::size_t i = 0; i < 3; ++i)
        {
            corners[3 + i] = halfway(corners[i], corners[(i + 1) % 3]);
        }
        for (const std::size_t i : {0, 3, 5, 3, 1, 4, 5, 4, 2, 3, 4, 5})
        {
            write(corners[i]);
        }
    }

    Corner halfway(const Corner& a, const Corner& b)
    {
        Corner middle;
        const std::pair<int, int> edge = std::minmax({nameOf(a), nameOf(b)});
        PositionMidpoint::write(a.position.data(), b.position.data(), middle.position.data());
        middle.position = m_midpoints.try_emplace(edge, middle.position).first->second;
        NormalMidpoint::write(a.normal.data(), b.normal.data(), middle.normal.data());
        TextureMidpoint::write(a.coordinate.data(), b.coordinate.data(), middle.coordinate.data());
        middle.tuple = a.tuple;
        middle.other = b.tuple;
        middle.isMidpoint = true;
        return middle;
    }

    /// The same for equal positions; one with a NaN equals that of its tuple alone.
    int nameOf(const Corner& corner)
    {
        const auto known = m_names.find(corner.tuple);
        return known != m_names.end()
                   ? known->second
                   : m_names[corner.tuple] = m_known.insertValue(3, corner.position.data());
    }

    void write(const Corner& corner)
    {
        const int before = positions.getCount();
        const int position = positions.insertValue(3, corner.position.data());
        indices.back().push_back(position);
        if (m_hasNormals)
        {
            indices.back().push_back(normals.insertValue(3, corner.normal.data()));
        }
        if (m_hasCoordinates)
        {
            indices.back().push_back(coordinates.insertValue(2, corner.coordinate.data()));
        }
        if (m_skin != nullptr && positions.getCount() != before)
        {
            writeInfluences(corner);
        }
    }

    void writeInfluences(const Corner& corner)
    {
        std::vector<int> joints;
        std::vector<float> values;
        if (corner.isMidpoint)
        {
            m_skin->calculateNewJointsAndWeights(corner.tuple, corner.other, joints, values);
        }
        else
        {
            m_skin->getVertexJointsAndWeights(corner.tuple, joints, values);
        }
        vcount.push_back(static_cast<unsigned int>(joints.size()));
        for (std::size_t i = 0; i < joints.size(); ++i)
        {
            v.insert(v.end(), {joints[i], weights.insertValue(1, &values[i])});
        }
    }

    const Skin* m_skin;
    bool m_hasNormals = false; ///< the primitive that is being read
    bool m_hasCoordinates = false;
    Stream m_known{"", 3, false};
    std::map<int, int> m_names; ///< by position tuple
    std::map<std::pair<int, int>, Floats> m_midpoints;
};
} // namespace velmoran::scene
