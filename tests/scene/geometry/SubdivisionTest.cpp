#include "tests/scene/geometry/PlainSubdivision.h"

#include "scene/deform/Controller.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Polygon.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "tests/scene/SceneUnderTest.h"

#include <cmath>
#include <limits>
#include <random>

namespace velmoran::scene
{
namespace
{
using ::testing::ElementsAreArray;

/// Gives `mesh` an input in its vertices list.
void addToVertices(Mesh& mesh, StreamSemantic semantic, int stride, const std::vector<float>& data)
{
    const StreamPtr stream = makeStream(streamSemanticToString(semantic), stride, data);
    mesh.addStream(stream);
    mesh.addVerticesMapping(StreamMapping(semantic, stream, 0));
}

ControllerPtr makeController(const SkinPtr& skin)
{
    const auto controller = boost::make_shared<Controller>("c", "");
    controller->setSkin(skin);
    return controller;
}

SkinPtr makeSkin(const IGeometryPtr& geometry, const std::vector<unsigned int>& vcount,
                 const std::vector<int>& v, const std::vector<float>& weights)
{
    const auto skin = boost::make_shared<Skin>(geometry);
    skin->setStreams({makeStream("weights", 1, weights)});
    skin->setVertexWeightsInput("WEIGHT", "weights");
    skin->setVCount(vcount);
    skin->setV(v);
    return skin;
}

/// Semantic and offset of each input.
std::vector<std::pair<int, int>> inputsOf(const IMeshPrimitive& primitive)
{
    std::vector<std::pair<int, int>> inputs;
    for (const StreamMapping& mapping : primitive.getStreamMapping())
    {
        inputs.emplace_back(mapping.getSemantic(), mapping.getOffset());
    }
    return inputs;
}

void expectEqual(const StreamPtr& stream, const Stream& expected)
{
    const bool isEmpty = expected.getData().empty();
    ASSERT_TRUE(stream || isEmpty);
    if (stream)
    {
        EXPECT_THAT(stream->getData(), areFloats(expected.getData())) << stream->getID();
        EXPECT_EQ(stream->getCount(), expected.getCount());
        EXPECT_EQ(stream->getStride(), expected.getStride());
        EXPECT_FALSE(stream->getAllowDuplicates());
    }
}

void expectEqual(const Mesh& mesh, const PlainSubdivision& expected)
{
    expectEqual(mesh.getStream(expected.positions.getID()), expected.positions);
    expectEqual(mesh.getStream(expected.normals.getID()), expected.normals);
    expectEqual(mesh.getStream(expected.coordinates.getID()), expected.coordinates);
    for (unsigned int i = 0; i < mesh.getPrimitiveCount(); ++i)
    {
        EXPECT_THAT(mesh.getPrimitive(i)->getIndexStream(), ElementsAreArray(expected.indices[i]));
    }
}

// Meshes whose few values repeat and can't always be read, with seams and all kinds of inputs.
class RandomMesh
{
public:
    explicit RandomMesh(unsigned int seed) : m_random(seed)
    {
        addToVertices(mesh(), POSITION, 2 + pick(3), floats(60));
        if (pick(3) == 0)
        {
            addToVertices(mesh(), NORMAL, 2 + pick(3), floats(60));
        }
        for (int primitives = 1 + pick(3); primitives > 0; --primitives)
        {
            std::vector<StreamMapping> inputs = {VERTEX_INPUT};
            for (const StreamSemantic semantic : {NORMAL, COLOR, TEXCOORD})
            {
                const StreamPtr stream = makeStream("", 1 + pick(4), floats(60));
                if (pick(2) == 0)
                {
                    inputs.emplace_back(semantic, stream, static_cast<int>(inputs.size()));
                }
            }
            owned.addTriangles(inputs, indices());
        }
        std::vector<int> v(80);
        std::generate(v.begin(), v.end(), [this] { return pick(5) - (pick(9) == 0 ? 9 : 0); });
        std::vector<unsigned int> vcount(15);
        std::generate(vcount.begin(), vcount.end(), [this] { return pick(6); });
        skin = makeSkin(owned.mesh, vcount, v, floats(4));
    }

    Mesh& mesh() { return *owned.mesh; }

    OwnedMesh owned;
    SkinPtr skin;

private:
    int pick(int end) { return static_cast<int>(m_random() % static_cast<unsigned int>(end)); }

    std::vector<float> floats(std::size_t count)
    {
        const float values[] = {0.0F,  -0.0F, 1.0F,     0.3F,
                                -0.7F, 5.0F,  INFINITY, std::numeric_limits<float>::quiet_NaN()};
        std::vector<float> result(count);
        std::generate(result.begin(), result.end(),
                      [&] { return values[pick(pick(8) == 0 && m_hasOddValues ? 8 : 6)]; });
        return result;
    }

    std::vector<unsigned int> indices()
    {
        std::vector<unsigned int> result(m_random() % 300);
        std::generate(result.begin(), result.end(),
                      [this] { return static_cast<unsigned int>(pick(18)); });
        return result;
    }

    std::mt19937 m_random;
    bool m_hasOddValues = m_random() % 2 == 0;
};

TEST(Subdivision, StoresWhatInsertingCornerByCornerStores)
{
    for (unsigned int seed = 0; seed < 200; ++seed)
    {
        SCOPED_TRACE(seed);
        RandomMesh random(seed);
        const PlainSubdivision expected(random.mesh(), random.skin.get());
        random.mesh().subDivide(makeController(random.skin));
        expectEqual(random.mesh(), expected);
        expectEqual(random.skin->getVertexWeightsInput("WEIGHT"), expected.weights);
        EXPECT_EQ(random.skin->getVCount(), expected.vcount);
        EXPECT_EQ(random.skin->getV(), expected.v);
        ASSERT_FALSE(HasFailure());
    }
}

// Two triangles of a square, which share the edge from (2, 0) to (0, 2). Their corners there are
// tuples of their own; the texture coordinates have a seam.
class Square : public ::testing::Test
{
protected:
    OwnedMesh owned;
    Mesh& mesh = *owned.mesh;
    TriangleMeshPrimitivePtr primitive;

    Square()
    {
        addToVertices(mesh, POSITION, 3,
                      {0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 2, 0, 2, -0.0F, 0, 2, 2, 0});
        const StreamPtr normals = makeStream("n", 3, {1, 0, 0, 0, 0, 1, -1, 0, 0});
        const StreamPtr coordinates = makeStream("t", 2, {0, 0, 1, 0, 0, 1, 4, 4, 6, 4, 6, 6});
        primitive = owned.addTriangles({VERTEX_INPUT, StreamMapping(NORMAL, normals, 1),
                                        StreamMapping(TEXCOORD, coordinates, 2)},
                                       {0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 1, 3, 4, 1, 4, 5, 1, 5});
        primitive->setMaterialSymbol("red");
    }

    SkinPtr skinOfSquare() const
    {
        // The doubles of vertices 1 and 2 have other influences.
        return makeSkin(owned.mesh, {1, 2, 1, 1, 1, 0}, {0, 0, 0, 1, 1, 1, 2, 0, 7, 0, 8, 0},
                        {1, 0.5F});
    }
};

TEST_F(Square, SharesMidpointsOfEqualPositionsAndKeepsSeams)
{
    const Eigen::Vector3f maximum = mesh.getBVMax();
    mesh.subDivide(ControllerPtr());

    EXPECT_THAT(idsOf(mesh.getStreams()),
                ElementsAre("VMR_SUBDIVIDE_POSITION_STREAM", "VMR_SUBDIVIDE_NORMAL_STREAM",
                            "VMR_SUBDIVIDE_UV_STREAM", "m_vertices"));
    ASSERT_EQ(mesh.getVertices().size(), 1U);
    EXPECT_EQ(mesh.getVertices()[0].getSemantic(), POSITION);
    EXPECT_THAT(inputsOf(*primitive),
                ElementsAre(std::pair(VERTEX, 0), std::pair(NORMAL, 1), std::pair(TEXCOORD, 2)));
    EXPECT_EQ(primitive->getStreamMapping()[0].getStream(), mesh.getStreams()[3]);
    EXPECT_EQ(mesh.getStreams()[3]->getStride(), 0);

    // 1, m12, m31, 2, m23, 3 of the first triangle; m23 is not stored again.
    EXPECT_THAT(mesh.getStreams()[0]->getData(),
                ElementsAre(0, 0, 0, 1, 0, 0, 0, 1, 0, 2, 0, 0, 1, 1, 0, 0, 2, 0, //
                            1, 2, 0, 2, 1, 0, 2, 2, 0));
    const float half = std::sqrt(0.5F);
    EXPECT_THAT(mesh.getStreams()[1]->getData(),
                ElementsAre(1, 0, 0, half, 0, half, 0, 0, 0, 0, 0, 1, -half, 0, half, -1, 0, 0));
    EXPECT_EQ(mesh.getStreams()[2]->getCount(), 12); // 6 on each side of the seam
    const std::vector<unsigned int>& indices = primitive->getIndexStream();
    ASSERT_EQ(indices.size(), 8U * 3 * 3);
    EXPECT_EQ(std::vector<unsigned int>(indices.begin(), indices.begin() + 18),
              std::vector<unsigned int>({0, 0, 0, 1, 1, 1, 2, 2, 2, 1, 1, 1, 3, 3, 3, 4, 4, 4}));

    EXPECT_EQ(primitive->getMaterialSymbol(), "red");
    EXPECT_EQ(mesh.getBVMax(), maximum);
}

TEST_F(Square, CarriesTheSkinToTheNewPositions)
{
    const SkinPtr skin = skinOfSquare();
    mesh.subDivide(makeController(skin));
    // Positions in order; influences of the second triangle count where it comes first.
    EXPECT_THAT(skin->getVCount(), ElementsAre(1, 2, 2, 2, 3, 1, 1, 1, 0));
    const StreamPtr weights = skin->getVertexWeightsInput("WEIGHT");
    EXPECT_EQ(weights->getID(), "VMR_SUBDIVIDE_WEIGHT_STREAM");
    EXPECT_THAT(skin->getStreams(), ElementsAre(weights));
    EXPECT_THAT(weights->getData(), ElementsAre(1, 0.75F, 0.25F, 0.5F));
    EXPECT_THAT(skin->getV(), ElementsAre(0, 0,               // (0, 0)
                                          0, 1, 1, 2,         // (1, 0)
                                          0, 3, 2, 3,         // (0, 1)
                                          0, 3, 1, 3,         // (2, 0)
                                          0, 2, 1, 2, 2, 3,   // (1, 1)
                                          2, 0, 7, 3, 8, 3)); // (0, 2), (1, 2), (2, 1)
}

TEST_F(Square, LeavesTheSkinOfAnotherMeshAlone)
{
    const SkinPtr skin = makeSkin(boost::make_shared<Mesh>("other", ""), {1}, {0, 0}, {1});
    mesh.subDivide(makeController(skin));
    EXPECT_THAT(skin->getVCount(), ElementsAre(1));
    EXPECT_THAT(idsOf(skin->getStreams()), ElementsAre("weights"));
    mesh.subDivide(makeController(SkinPtr()));
    EXPECT_EQ(primitive->getCount(), 2U * 16);
}

TEST_F(Square, GivesVerticesOfABrokenSkinNoInfluences)
{
    const std::tuple<const char*, std::vector<unsigned int>, std::vector<int>, std::size_t> rows[] =
        {{"no lists", {}, {}, 0U},
         {"too few counts", {1}, {0, 0}, 3U}, // vertex 0 and its two edges
         {"too few influences", {1, 2, 1, 1, 1, 1}, {0, 0, 0}, 3U},
         {"too many influences", {4000000000U, 4000000000U}, {0, 0}, 3U},
         {"no such weight", {1, 1}, {0, -1, 0, 9}, 0U}};
    for (const auto& [name, vcount, v, influences] : rows)
    {
        SCOPED_TRACE(name);
        const OwnedMesh copy;
        addToVertices(*copy.mesh, POSITION, 3, mesh.getVertices()[0].getStream()->getData());
        copy.addTriangles({VERTEX_INPUT}, {0, 1, 2, 3, 4, 5});
        const SkinPtr skin = makeSkin(copy.mesh, vcount, v, {1});
        copy.mesh->subDivide(makeController(skin));
        EXPECT_EQ(skin->getVCount().size(), 9U);
        EXPECT_EQ(skin->getV().size(), 2 * influences);
    }
    const OwnedMesh broken; // its third corner has no position, and so no influences
    addToVertices(*broken.mesh, POSITION, 3, {1, 0, 0, 0, 2, 0});
    broken.addTriangles({VERTEX_INPUT}, {0, 1, 99});
    const SkinPtr skin = makeSkin(broken.mesh, {1, 1}, {0, 0, 0, 0}, {1});
    broken.mesh->subDivide(makeController(skin));
    EXPECT_THAT(skin->getVCount(), ElementsAre(1, 1, 1, 1, 1, 0));
}

// A strip of three squares, each of two triangles, the squares in primitives of their own: with
// normals, with texture coordinates, and a polygon.
class Strip : public ::testing::Test
{
protected:
    OwnedMesh owned;
    Mesh& mesh = *owned.mesh;
    TriangleMeshPrimitivePtr first;
    TriangleMeshPrimitivePtr second;
    PolygonMeshPrimitivePtr polygon;

    Strip()
    {
        addToVertices(mesh, POSITION, 3,
                      {3, 1, 0, 3, 0, 0, 2, 1, 0, 2, 0, 0, 1, 1, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0});
        addToVertices(mesh, COLOR, 1, std::vector<float>(8, 0.5F));
        first = owned.addTriangles(
            {VERTEX_INPUT, StreamMapping(NORMAL, makeStream("n", 3, {0, 0, 1}), 1)},
            {7, 0, 5, 0, 4, 0, 7, 0, 4, 0, 6, 0});
        second = owned.addTriangles(
            {VERTEX_INPUT, StreamMapping(TEXCOORD, makeStream("t", 2, {0, 0, 1, 1}), 1)},
            {5, 0, 3, 1, 2, 1, 5, 0, 2, 1, 4, 0});
        polygon = boost::make_shared<PolygonMeshPrimitive>(
            owned.mesh, std::vector<StreamMapping>{VERTEX_INPUT},
            std::vector<unsigned int>{3, 1, 0, 2, 9, 3, 1}, std::vector<unsigned int>{4, 3});
        mesh.addPrimitive(polygon);
    }

    static double areaOf(const IMeshPrimitive& primitive)
    {
        double area = 0.0;
        for (const IPrimitivePtr& triangle : primitive.getPrimitives())
        {
            std::vector<Eigen::Vector3d> corners;
            for (const VertexPtr& vertex : triangle->getVertexArray())
            {
                const auto position = vertex->getPositionVector();
                corners.emplace_back(position[0], position[1], position[2]);
            }
            area += 0.5 * (corners[1] - corners[0]).cross(corners[2] - corners[0]).z();
        }
        return area;
    }

    std::vector<float> polygonPositions() const
    {
        std::vector<float> floats;
        for (const VertexPtr& vertex : polygon->getPolygonAt(0)->getVertexArray())
        {
            floats.push_back(vertex->getPositionVector()[0]);
            floats.push_back(vertex->getPositionVector()[1]);
        }
        return floats;
    }
};

TEST_F(Strip, KeepsAllPrimitivesRightForSeveralRounds)
{
    for (int triangles = 8; triangles <= 128; triangles *= 4)
    {
        ::testing::internal::CaptureStdout();
        mesh.subDivide(ControllerPtr());
        EXPECT_EQ(::testing::internal::GetCapturedStdout(),
                  "PolygonMeshPrimitive::subDivide(): Implement me!\n");
        EXPECT_EQ(first->getCount(), static_cast<unsigned int>(triangles));
        EXPECT_EQ(second->getCount(), static_cast<unsigned int>(triangles));
        EXPECT_EQ(areaOf(*first), 1.0);
        EXPECT_EQ(areaOf(*second), 1.0);
        EXPECT_THAT(polygonPositions(), ElementsAre(2, 0, 3, 0, 3, 1, 2, 1));
        EXPECT_FALSE(polygon->getPolygonAt(1)->getVertexArray()[0]->getPosition());
    }
    EXPECT_THAT(inputsOf(*first), ElementsAre(std::pair(VERTEX, 0), std::pair(NORMAL, 1)));
    EXPECT_THAT(inputsOf(*second), ElementsAre(std::pair(VERTEX, 0), std::pair(TEXCOORD, 1)));
    // 9 rows of 17 vertices, and two of the polygon.
    EXPECT_EQ(mesh.getStream("VMR_SUBDIVIDE_POSITION_STREAM")->getCount(), 9 * 17 + 2);
    EXPECT_EQ(mesh.getStream("VMR_SUBDIVIDE_NORMAL_STREAM")->getCount(), 1);
    EXPECT_EQ(mesh.getStream("VMR_SUBDIVIDE_UV_STREAM")->getCount(), 9);
}

TEST_F(Strip, RefinesAPrimitiveAloneAndKeepsTheOthersInPlace)
{
    const SkinPtr skin = makeSkin(owned.mesh, {1, 1, 1, 1, 1, 1, 1, 1},
                                  {0, 0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0, 7, 0}, {1});
    second->subDivide(makeController(skin));
    EXPECT_EQ(first->getCount(), 2U);
    EXPECT_EQ(areaOf(*first), 1.0);
    EXPECT_EQ(second->getCount(), 8U);
    EXPECT_THAT(polygonPositions(), ElementsAre(2, 0, 3, 0, 3, 1, 2, 1));
    EXPECT_TRUE(first->getTriangleAt(0)->getVertexAt(0)->getNormal());
    // Vertex 7 is only used by the first primitive.
    const unsigned int corner = first->getIndexStream()[0];
    std::vector<int> joints;
    std::vector<float> weights;
    skin->getVertexJointsAndWeights(static_cast<int>(corner), joints, weights);
    EXPECT_THAT(joints, ElementsAre(7));
    EXPECT_EQ(skin->getVCount().size(), 9U + 4U);
}

TEST(UnrefinedFaces, PartFromInputsThatShareTheSlotOfThePositions)
{
    const OwnedMesh owned;
    addToVertices(*owned.mesh, POSITION, 3, {5, 5, 5, 0, 0, 0, 1, 0, 0, 0, 1, 0});
    owned.addTriangles({VERTEX_INPUT}, {1, 2, 3});
    const StreamPtr other = makeStream("o", 1, {1});
    const auto kept = owned.addTriangles(
        {StreamMapping(NORMAL, other, 0), VERTEX_INPUT, StreamMapping(TEXCOORD, other, 1)},
        {1, 0, 2, 0, 9, 0});
    owned.mesh->getPrimitive(0)->subDivide(ControllerPtr());
    EXPECT_THAT(inputsOf(*kept), ElementsAre(std::pair(VERTEX, 0), std::pair(TEXCOORD, 1)));
    EXPECT_THAT(kept->getIndexStream(), ElementsAre(0, 0, 3, 0, 0xFFFFFFFF, 0));
}

TEST(Subdivision, RefinesWhatIsEmptyToNothing)
{
    const OwnedMesh owned;
    owned.mesh->addStream(makeStream("other", 3, {1, 2, 3}));
    owned.mesh->subDivide(ControllerPtr());
    EXPECT_THAT(idsOf(owned.mesh->getStreams()), ElementsAre("other")); // nothing to refine

    const auto primitive = owned.addTriangles({});
    owned.mesh->subDivide(ControllerPtr());
    EXPECT_THAT(idsOf(owned.mesh->getStreams()),
                ElementsAre("VMR_SUBDIVIDE_POSITION_STREAM", "m_vertices"));
    EXPECT_THAT(inputsOf(*primitive), ElementsAre(std::pair(VERTEX, 0)));
    EXPECT_THAT(primitive->getIndexStream(), IsEmpty());

    TriangleMeshPrimitive loose(MeshPtr(), {VERTEX_INPUT}, {0, 1, 2});
    loose.subDivide(ControllerPtr());
    EXPECT_EQ(loose.getCount(), 1U);
}

TEST(Subdivision, OfALibrarysGeometryIsAnnouncedOnce)
{
    SceneUnderTest scene;
    GeometryManager library(scene.eventManager);
    const OwnedMesh owned;
    library.addGeometry(owned.mesh);
    const auto triangles = owned.addTriangles({VERTEX_INPUT}, {0, 1, 2});
    library.subDivideGeometry("m", ControllerPtr());
    library.subDivideGeometry("?", ControllerPtr());
    EXPECT_THAT(scene.events.log, ElementsAre("GeometryTopologyUpdate:m"));
    EXPECT_EQ(triangles->getCount(), 4U);
}
} // namespace
} // namespace velmoran::scene
