#include "scene/geometry/VertexNormals.h"

#include "scene/geometry/FaceCorners.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/NormalStorage.h"
#include "scene/geometry/Stream.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace velmoran::scene
{
namespace
{
struct Vector
{
    float x;
    float y;
    float z;

    float length() const { return std::sqrt(x * x + (y * y + z * z)); }
};

// Edges and face normals are those of `Triangle`, number by number. They are told anew in
// plain floats, which the compiler keeps in registers.

inline Vector makeUnitEdge(const float* from, const float* to)
{
    Vector edge = {to[0] - from[0], to[1] - from[1], to[2] - from[2]};
    float length = edge.length();
    if (length == 0.0F)
    {
        edge.x += 0.001F;
        length = edge.length();
    }
    return {edge.x / length, edge.y / length, edge.z / length};
}

inline Vector makeFaceNormal(const float* first, const float* second, const float* third)
{
    const Vector a = makeUnitEdge(first, second);
    const Vector b = makeUnitEdge(first, third);
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Tuples of `width` floats as tuples of three: cut off or filled up with zeros.
std::vector<float> makeTriples(const std::vector<float>& data, std::size_t width)
{
    const std::size_t kept = std::min<std::size_t>(width, 3);
    std::vector<float> triples(data.size() / width * 3);
    for (std::size_t i = 0; i < triples.size() / 3; ++i)
    {
        std::copy_n(&data[i * width], kept, &triples[i * 3]);
    }
    return triples;
}

/// The positions of a mesh, three floats each.
struct Positions
{
    const float* floats;
    std::size_t count;

    /// The origin stands for what is not there.
    const float* at(std::size_t index) const { return index < count ? floats + 3 * index : ORIGIN; }

    static constexpr float ORIGIN[] = {0.0F, 0.0F, 0.0F};
};

/// Tuple indices of corners in a row: corner c has entry c * step.
struct CornerIndices
{
    const unsigned int* entries;
    std::size_t step;

    unsigned int at(std::size_t corner) const { return entries[corner * step]; }
};

/// Sums of face normals, one for each position.
class NormalSums
{
public:
    explicit NormalSums(Positions positions) : m_positions(positions), m_sums(3 * positions.count)
    {
    }

    void add(const TriangleMeshPrimitive& primitive)
    {
        const FaceCorners corners(primitive);
        if (corners.triangleCount() == 0)
        {
            return;
        }
        if (!corners.isPlain())
        {
            addInBlocks(corners);
            return;
        }
        const CornerIndices indices = {primitive.getIndexStream().data() + corners.firstSlot(),
                                       corners.width()};
        add(indices, indices, corners.triangleCount());
    }

    /// The sums, brought to length 1; what sums up to zero has no direction and gets NaN.
    std::vector<float> takeNormals()
    {
        for (std::size_t i = 0; i < m_sums.size(); i += 3)
        {
            float* const sum = &m_sums[i];
            const float scale =
                1.0F / std::sqrt(sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2]);
            sum[0] *= scale;
            sum[1] *= scale;
            sum[2] *= scale;
        }
        return std::move(m_sums);
    }

private:
    /// `corners` of the assembled triangles and of their records differ.
    void addInBlocks(const FaceCorners& corners)
    {
        constexpr std::size_t BLOCK = 256;
        std::array<unsigned int, 3 * BLOCK> assembled;
        std::array<unsigned int, 3 * BLOCK> recorded;
        const std::size_t triangles = corners.triangleCount();
        for (std::size_t first = 0; first < triangles; first += BLOCK)
        {
            const std::size_t count = std::min(BLOCK, triangles - first);
            for (std::size_t i = 0; i < 3 * count; ++i)
            {
                assembled[i] = corners.findPosition(3 * first + i, m_positions.count);
                recorded[i] = corners.getRecordPosition(3 * first + i);
            }
            add({assembled.data(), 1}, {recorded.data(), 1}, count);
        }
    }

    /// Adds the face normals of triangles between the positions `from` to the sums of the
    /// positions `to`.
    void add(CornerIndices from, CornerIndices to, std::size_t triangles)
    {
        const Positions positions = m_positions; // nothing that is written may change it
        float* const sums = m_sums.data();
        for (; triangles != 0; --triangles)
        {
            const Vector normal = makeFaceNormal(positions.at(from.at(0)), positions.at(from.at(1)),
                                                 positions.at(from.at(2)));
            for (const unsigned int tuple : {to.at(0), to.at(1), to.at(2)})
            {
                if (tuple < positions.count)
                {
                    float* const sum = sums + 3 * std::size_t(tuple);
                    sum[0] += normal.x;
                    sum[1] += normal.y;
                    sum[2] += normal.z;
                }
            }
            from.entries += 3 * from.step;
            to.entries += 3 * to.step;
        }
    }

    Positions m_positions;
    std::vector<float> m_sums;
};
} // namespace

void computeVertexNormals(Mesh& mesh, const std::vector<TriangleMeshPrimitive*>& primitives)
{
    const StreamMapping* const mapping = findStreamMapping(mesh.getVertices(), POSITION);
    const StreamPtr stream = mapping != nullptr ? mapping->getStream() : StreamPtr();
    std::vector<TriangleMeshPrimitive*> readable;
    std::copy_if(primitives.begin(), primitives.end(), std::back_inserter(readable),
                 [](const TriangleMeshPrimitive* primitive)
                 { return findStreamMapping(primitive->getStreamMapping(), VERTEX) != nullptr; });
    if (!stream || stream->getStride() <= 0 || readable.empty())
    {
        return;
    }
    const std::vector<float>& data = stream->getData();
    const auto width = static_cast<std::size_t>(stream->getStride());
    const std::vector<float> triples = width != 3 ? makeTriples(data, width) : std::vector<float>();
    NormalSums sums({width != 3 ? triples.data() : data.data(), data.size() / width});
    for (const TriangleMeshPrimitive* const primitive : readable)
    {
        sums.add(*primitive);
    }
    storeNormals(mesh, readable, sums.takeNormals());
}
} // namespace velmoran::scene
