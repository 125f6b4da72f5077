#include "scene/geometry/Subdivision.h"

#include "scene/deform/SkinRefinement.h"
#include "scene/geometry/CornerValues.h"
#include "scene/geometry/DistinctValues.h"
#include "scene/geometry/EdgeTable.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Midpoints.h"
#include "scene/geometry/RefinedValues.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/UnrefinedFaces.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>

namespace velmoran::scene
{
namespace
{
/// A primitive that is refined, and what it will be.
struct RefinedPrimitive
{
    explicit RefinedPrimitive(TriangleMeshPrimitive& refined)
        : primitive(refined), triangles(countReadable(refined))
    {
        for (const StreamSemantic semantic : {VERTEX, NORMAL, TEXCOORD})
        {
            if (semantic == VERTEX || CornerValues::hasInput(refined, semantic))
            {
                inputs.emplace_back(semantic, StreamPtr(), static_cast<int>(inputs.size()));
            }
        }
    }

    /// The triangles that are counted, but for those that begin behind the index records.
    static std::size_t countReadable(const TriangleMeshPrimitive& primitive)
    {
        const std::size_t width = 3 * primitive.getStreamMapping().size();
        const std::size_t begun =
            width != 0 ? (primitive.getIndexStream().size() + width - 1) / width : 0;
        return std::min<std::size_t>(begun, primitive.getCount());
    }

    StreamMapping* findInput(StreamSemantic semantic)
    {
        const auto found = std::find_if(inputs.begin(), inputs.end(),
                                        [semantic](const StreamMapping& input)
                                        { return input.getSemantic() == semantic; });
        return found != inputs.end() ? &*found : nullptr;
    }

    TriangleMeshPrimitive& primitive;
    std::size_t triangles;
    std::vector<StreamMapping> inputs;
    std::vector<unsigned int> indices;
};

/// Refines primitives of a mesh; nothing of mesh and skin changes before `publish`.
class Refinement
{
public:
    Refinement(Mesh& mesh, const std::vector<TriangleMeshPrimitive*>& primitives,
               const ControllerPtr& controller);

    /// Whether all tuples and half-edges can be counted.
    bool isPossible() const;

    void compute();
    void publish();

private:
    void computePositions();

    template <typename Midpoint>
    void computeAttribute(StreamSemantic semantic, const char* id);

    template <typename Midpoint>
    void writeTriangles(RefinedValues<Midpoint>& values, StreamSemantic semantic);

    void store(const DistinctValues& values, StreamSemantic semantic);
    void computeSkin(const std::vector<int>& tuples, const std::vector<unsigned int>& origins,
                     const DistinctValues& positions);

    Mesh& m_mesh;
    std::vector<RefinedPrimitive> m_refined;
    std::vector<UnrefinedFaces> m_unrefined;
    SkinRefinement m_skin;
    std::size_t m_triangles = 0;
    std::size_t m_corners = 0; ///< of unrefined faces, at most
    std::unique_ptr<EdgeTable> m_edges;
    std::vector<StreamPtr> m_streams;
    std::vector<StreamMapping> m_vertices;
};

Refinement::Refinement(Mesh& mesh, const std::vector<TriangleMeshPrimitive*>& primitives,
                       const ControllerPtr& controller)
    : m_mesh(mesh), m_skin(controller, mesh)
{
    for (TriangleMeshPrimitive* const primitive : primitives)
    {
        m_refined.emplace_back(*primitive);
        m_triangles += m_refined.back().triangles;
    }
    for (const IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
    {
        auto* const base = dynamic_cast<MeshPrimitiveBase*>(primitive.get());
        if (base != nullptr && base->getMesh().get() == &mesh &&
            std::find(primitives.begin(), primitives.end(), base) == primitives.end())
        {
            m_unrefined.emplace_back(*base);
            m_corners += base->getIndexStream().size();
        }
    }
}

bool Refinement::isPossible() const
{
    constexpr std::uint64_t MOST = std::numeric_limits<std::int32_t>::max();
    return m_corners <= MOST && m_triangles <= (MOST - m_corners) / REFINED_CORNERS;
}

void Refinement::compute()
{
    for (RefinedPrimitive& part : m_refined)
    {
        part.indices.resize(REFINED_CORNERS * part.triangles * part.inputs.size());
    }
    computePositions();
    computeAttribute<NormalMidpoint>(NORMAL, "VMR_SUBDIVIDE_NORMAL_STREAM");
    computeAttribute<TextureMidpoint>(TEXCOORD, "VMR_SUBDIVIDE_UV_STREAM");
    m_streams.push_back(boost::make_shared<Stream>(m_mesh.getVerticesID(), 0, false));
    m_vertices.emplace_back(POSITION, m_streams.front(), 0);
    for (RefinedPrimitive& part : m_refined)
    {
        part.findInput(VERTEX)->setStream(m_streams.back());
    }
}

void Refinement::computePositions()
{
    CornerValues corners(POSITION, PositionMidpoint::WIDTH);
    corners.reserve(3 * m_triangles);
    for (const RefinedPrimitive& part : m_refined)
    {
        corners.appendTriangles(part.primitive, part.triangles);
    }
    const StreamMapping* const mapping = findStreamMapping(m_mesh.getVertices(), POSITION);
    for (UnrefinedFaces& faces : m_unrefined)
    {
        faces.appendCorners(mapping != nullptr ? mapping->getStream() : StreamPtr(), corners);
    }
    const std::vector<int> tuples = m_skin.isNeeded() ? corners.getTuples() : std::vector<int>();
    corners.joinEqualValues();
    m_edges =
        std::make_unique<EdgeTable>(corners.getCorners(), m_triangles, corners.countNumbers());

    RefinedValues<PositionMidpoint> values(corners, *m_edges, m_skin.isNeeded());
    writeTriangles(values, VERTEX);
    std::size_t corner = 3 * m_triangles;
    for (UnrefinedFaces& faces : m_unrefined)
    {
        faces.changeIndices([&](unsigned int) { return values.addCorner(corner++); });
    }
    const DistinctValues positions("VMR_SUBDIVIDE_POSITION_STREAM", PositionMidpoint::WIDTH,
                                   values.takeValues());
    store(positions, VERTEX);
    for (UnrefinedFaces& faces : m_unrefined)
    {
        faces.changeIndices([&](unsigned int number)
                            { return static_cast<unsigned int>(positions.getTuple(number)); });
    }
    if (m_skin.isNeeded())
    {
        computeSkin(tuples, values.getOrigins(), positions);
    }
}

/// Texture coordinates or normals, if any primitive has them.
template <typename Midpoint>
void Refinement::computeAttribute(StreamSemantic semantic, const char* id)
{
    if (std::none_of(m_refined.begin(), m_refined.end(),
                     [semantic](RefinedPrimitive& part)
                     { return part.findInput(semantic) != nullptr; }))
    {
        return;
    }
    CornerValues corners(semantic, Midpoint::WIDTH);
    corners.reserve(3 * m_triangles);
    for (RefinedPrimitive& part : m_refined)
    {
        if (part.findInput(semantic) != nullptr)
        {
            corners.appendTriangles(part.primitive, part.triangles);
        }
        else
        {
            corners.appendNothing(3 * part.triangles);
        }
    }
    RefinedValues<Midpoint> values(corners, *m_edges);
    writeTriangles(values, semantic);
    store(DistinctValues(id, Midpoint::WIDTH, values.takeValues()), semantic);
}

template <typename Midpoint>
void Refinement::writeTriangles(RefinedValues<Midpoint>& values, StreamSemantic semantic)
{
    std::size_t triangle = 0;
    for (RefinedPrimitive& part : m_refined)
    {
        const StreamMapping* const input = part.findInput(semantic);
        const std::size_t step = part.inputs.size();
        for (std::size_t i = 0; i < part.triangles && input != nullptr; ++i)
        {
            const std::size_t record = REFINED_CORNERS * i * step;
            const auto slot = static_cast<std::size_t>(input->getOffset());
            values.addTriangle(triangle + i, &part.indices[record + slot], step);
        }
        triangle += part.triangles;
    }
}

/// Takes over the stream, and makes tuples of the numbers in the slots of `semantic`.
void Refinement::store(const DistinctValues& values, StreamSemantic semantic)
{
    m_streams.push_back(values.stream);
    for (RefinedPrimitive& part : m_refined)
    {
        StreamMapping* const input = part.findInput(semantic);
        if (input == nullptr)
        {
            continue;
        }
        input->setStream(values.stream);
        const std::size_t step = part.inputs.size();
        for (auto i = static_cast<std::size_t>(input->getOffset());
             i < part.indices.size() && !values.tuples.empty(); i += step)
        {
            part.indices[i] = static_cast<unsigned int>(values.getTuple(part.indices[i]));
        }
    }
}

/// `tuples`: of each corner in the mesh's positions; `origins`: of the listed positions.
void Refinement::computeSkin(const std::vector<int>& tuples,
                             const std::vector<unsigned int>& origins,
                             const DistinctValues& positions)
{
    std::vector<VertexOrigin> vertices; // by the tuple of their position
    for (std::size_t i = 0; i < origins.size(); ++i)
    {
        if (positions.getTuple(i) != static_cast<int>(vertices.size()))
        {
            continue; // equal to one that was listed before
        }
        const std::size_t corner = origins[i] / 2;
        const bool isHalfway = origins[i] % 2 != 0;
        const int end = isHalfway ? tuples[EdgeTable::next(corner)] : -1;
        vertices.push_back({tuples[corner], end, isHalfway});
    }
    m_skin.compute(vertices);
}

void Refinement::publish()
{
    const StreamPtr vertices = m_streams.back();
    m_mesh.takeStreams(std::move(m_streams), std::move(m_vertices));
    for (RefinedPrimitive& part : m_refined)
    {
        part.primitive.setFaces(std::move(part.inputs), std::move(part.indices));
    }
    for (UnrefinedFaces& faces : m_unrefined)
    {
        faces.publish(vertices);
    }
    if (m_skin.isNeeded())
    {
        m_skin.apply();
    }
}
} // namespace

void subDivideTriangles(Mesh& mesh, const std::vector<TriangleMeshPrimitive*>& primitives,
                        const ControllerPtr& controller)
{
    if (primitives.empty())
    {
        return;
    }
    Refinement refinement(mesh, primitives, controller);
    if (refinement.isPossible())
    {
        refinement.compute();
        refinement.publish();
    }
}
} // namespace velmoran::scene
