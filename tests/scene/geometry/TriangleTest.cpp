#include "tests/scene/geometry/GeometryBuilders.h"

#include <cmath>

namespace velmoran::scene
{
namespace
{
using ::testing::HasSubstr;

TEST(Triangle, FaceNormalIsAsLongAsTheSineOfTheFirstAngle)
{
    const VertexPtr first = makeVertex(0.0f, 0.0f, 0.0f);
    const VertexPtr second = makeVertex(2.0f, 0.0f, 0.0f);
    const std::pair<VertexPtr, float> rows[] = {{makeVertex(0.0f, 5.0f, 0.0f), 1.0f},
                                                {makeVertex(std::sqrt(3.0f), 1.0f, 0.0f), 0.5f},
                                                {second, 0.0f}};
    for (const auto& [third, length] : rows)
    {
        const Eigen::Vector3f normal = Triangle(first, second, third).getFaceNormal();
        EXPECT_LT((normal - Eigen::Vector3f(0.0f, 0.0f, length)).norm(), 1e-6f) << length;
    }
    // The edge without length becomes (0.001, 0, 0).
    EXPECT_EQ(Triangle(first, first, makeVertex(0.0f, 4.0f, 0.0f)).getFaceNormal(),
              Eigen::Vector3f(0.0f, 0.0f, 1.0f));
}

TEST(Triangle, TransformMovesPositionsOnly)
{
    const VertexPtr corner = makeVertex(1.0f, 0.0f, 0.0f);
    corner->setNormal(1.0f, 0.0f, 0.0f);
    Triangle triangle(corner, corner, makeVertex(0.0f, 0.0f, 3.0f));
    Eigen::Matrix4f quarterTurnAndLift; // about z, then 2 up
    quarterTurnAndLift << 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 2, 0, 0, 0, 1;
    triangle.applyTransform(quarterTurnAndLift);
    EXPECT_THAT(valuesOf(corner->getPosition()), ElementsAre(0.0f, 1.0f, 2.0f));
    EXPECT_THAT(valuesOf(triangle.getVertexAt(2)->getPosition()), ElementsAre(0.0f, 0.0f, 5.0f));
    EXPECT_THAT(valuesOf(corner->getNormal()), ElementsAre(1.0f, 0.0f, 0.0f));
}

TEST(Triangle, PrintsItsCornersOnOneLineAndBearsMissingOnes)
{
    const Triangle triangle(makeVertex(1.0f, 2.0f, 3.0f), VertexPtr(),
                            makeVertex(4.0f, 5.5f, 6.0f));
    testing::internal::CaptureStdout();
    triangle.print();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Triangle:\n Vertex 1: 1, 2, 3 Vertex 2:  Vertex 3: 4, 5.5, 6");
    EXPECT_FALSE(triangle.getVertexAt(3));
}
// Three positions: tuple i is (i, 10 + i, 0).
class Triangles : public testing::Test
{
protected:
    Triangles() { owned.mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0)); }

    OwnedMesh owned;
    StreamPtr positions = makeStream("p", 3, {0, 10, 0, 1, 11, 0, 2, 12, 0});
    StreamPtr normals = makeStream("n", 2, {0.0f, 0.5f, 1.0f, 1.5f});
};

TEST_F(Triangles, AreReadWithAllAttributes)
{
    const auto primitive = owned.addTriangles(
        {StreamMapping(VERTEX, StreamPtr(), 0), StreamMapping(NORMAL, normals, 1),
         StreamMapping(TEXCOORD3, normals, 2), StreamMapping(POSITION, normals, 3)},
        {0, 0, 0, 0, 1, 1, 0, 0, 2, 0, 1, 0});
    ASSERT_EQ(primitive->getCount(), 1u);
    EXPECT_FALSE(primitive->getTriangleAt(0xFFFFFFFFu));
    const VertexPtr second = primitive->getTriangleAt(0)->getVertexAt(1);
    ASSERT_EQ(second->getElementCount(), 3u);
    EXPECT_THAT(valuesOf(second->getPosition()), ElementsAre(1.0f, 11.0f, 0.0f));
    EXPECT_THAT(valuesOf(second->getNormal()), ElementsAre(1.0f, 1.5f));
    EXPECT_THAT(valuesOf(second->getTexCoord(3)), ElementsAre(0.0f, 0.5f));
}

TEST_F(Triangles, WithSharedOffsetsAreCountedRightButReadTooWide)
{
    const auto primitive = owned.addTriangles(
        {StreamMapping(VERTEX, StreamPtr(), 0), StreamMapping(NORMAL, normals, 0)},
        {0, 1, 2, 1, 0, 2, 1, 0, 1});
    const std::vector<IPrimitivePtr> triangles = primitive->getPrimitives();
    ASSERT_EQ(triangles.size(), 3u);
    // Records of two entries: (0, 1), (2, 1), (0, 2), then (1, 0), (1, end), nothing.
    EXPECT_THAT(valuesOf(triangles[0]->getVertexArray()[1]->getPosition()),
                ElementsAre(2.0f, 12.0f, 0.0f));
    const std::vector<VertexPtr> cut = triangles[1]->getVertexArray();
    EXPECT_THAT(valuesOf(cut[1]->getPosition()), ElementsAre(1.0f, 11.0f, 0.0f));
    EXPECT_FALSE(cut[1]->getNormal());
    EXPECT_EQ(cut[2]->getElementCount(), 0u);
    EXPECT_FALSE(triangles[2]);
}

TEST_F(Triangles, LeaveOutAttributesWithBrokenIndices)
{
    const StreamPtr cut = makeStream("c", 3, {1.0f, 2.0f, 3.0f, 4.0f}); // one tuple and a bit
    const auto primitive = owned.addTriangles(
        {StreamMapping(VERTEX, StreamPtr(), 0), StreamMapping(NORMAL, normals, 1),
         StreamMapping(COLOR, cut, 2), StreamMapping(TANGENT, StreamPtr(), 3),
         StreamMapping(BINORMAL, makeStream("b", 0, {1.0f}), 4)},
        {3, 1, 0, 0, 0, 0xFFFFFFFFu, 2, 1, 0, 0, 0xFFFFFFFFu, 0xFFFFFFFFu, 0, 0, 0});
    const TrianglePtr triangle = primitive->getTriangleAt(0);
    EXPECT_FALSE(triangle->getVertexAt(0)->getPosition());
    EXPECT_EQ(triangle->getVertexAt(0)->getElementCount(), 2u);
    EXPECT_EQ(triangle->getVertexAt(1)->getElementCount(), 0u);
    EXPECT_THAT(valuesOf(triangle->getVertexAt(2)->getColor()), ElementsAre(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(triangle->getVertexAt(2)->getElementCount(), 1u);

    const auto noInputs = owned.addTriangles({}, {0, 1, 2});
    EXPECT_EQ(noInputs->getCount(), 0u);
    EXPECT_FALSE(noInputs->getPrimitiveAt(0));
}

// The corner (x, y, 0) with its normal in front of its position.
VertexPtr makeCorner(float x, float y, float normalX)
{
    const VertexPtr corner = boost::make_shared<Vertex>();
    corner->setNormal(normalX, 0.0f, 0.0f);
    corner->setPosition(x, y, 0.0f);
    return corner;
}

TrianglePtr makeTriangle()
{
    return boost::make_shared<Triangle>(makeCorner(1.0f, -2.0f, 0.5f), makeCorner(4.0f, 0.0f, 0.5f),
                                        makeCorner(0.0f, 3.0f, 1.0f));
}

TEST(AddTriangle, MakesStreamsWithThePositionsInTheFirstSlot)
{
    OwnedMesh owned;
    const auto primitive = owned.addTriangles({});
    ASSERT_TRUE(primitive->addTriangle(makeTriangle(), true));
    ASSERT_TRUE(primitive->addTriangle(makeTriangle(), true));
    EXPECT_THAT(primitive->getIndexStream(), ElementsAre(0, 0, 1, 0, 2, 1, 0, 0, 1, 0, 2, 1));
    EXPECT_EQ(owned.mesh->getStream("position_stream")->getCount(), 3);
    EXPECT_EQ(owned.mesh->getStream("NORMAL_stream")->getCount(), 2);
    EXPECT_THAT(primitive->getBVMin(), ElementsAre(0.0f, -2.0f, 0.0f));
    EXPECT_THAT(primitive->getBVMax(), ElementsAre(4.0f, 3.0f, 0.0f));
    EXPECT_THAT(primitive->getBVCenter(), ElementsAre(2.0f, 0.5f, 0.0f));
}

TEST(AddTriangle, StoresAVerticesListValueWithANewPositionOnly)
{
    OwnedMesh owned;
    const StreamPtr positions = makeStream("p", 3, {4.0f, 0.0f, 0.0f, 9.0f, 9.0f, 9.0f});
    const StreamPtr normals = makeStream("n", 3, {7.0f, 7.0f, 7.0f}); // one tuple is missing
    owned.mesh->setVertices(
        {StreamMapping(POSITION, positions, 0), StreamMapping(NORMAL, normals, 0)});
    const auto primitive = owned.addTriangles({StreamMapping(VERTEX, StreamPtr(), 0)});
    ASSERT_TRUE(primitive->addTriangle(makeTriangle(), true));
    EXPECT_THAT(primitive->getIndexStream(), ElementsAre(2, 0, 3));
    EXPECT_THAT(normals->getData(), ElementsAre(7, 7, 7, 0, 0, 0, 0.5f, 0, 0, 1, 0, 0));

    const VertexPtr lost = boost::make_shared<Vertex>(); // a normal without a position
    lost->setNormal(1.0f, 2.0f, 3.0f);
    ASSERT_TRUE(primitive->addTriangle(boost::make_shared<Triangle>(lost, lost, lost), true));
    EXPECT_EQ(normals->getData().size(), 12u);
}

TEST(AddTriangle, ChangesNothingWithoutUsableCorners)
{
    OwnedMesh owned;
    const auto primitive = owned.addTriangles({});
    const VertexPtr corner = makeVertex(0.0f, 0.0f, 0.0f);
    const VertexPtr strange = makeVertex(0.0f, 0.0f, 0.0f);
    strange->setTextCoord(8, 0.5f);
    EXPECT_FALSE(primitive->addTriangle(TrianglePtr(), true));
    for (const VertexPtr& third : {VertexPtr(), strange})
    {
        EXPECT_FALSE(
            primitive->addTriangle(boost::make_shared<Triangle>(corner, corner, third), true));
        EXPECT_THAT(primitive->getIndexStream(), IsEmpty());
        EXPECT_THAT(owned.mesh->getStream("position_stream")->getData(), IsEmpty());
    }
}

TEST(AddTriangle, LeavesAPartialTriangleWhenACornerDoesNotFit)
{
    const StreamPtr stream = makeStream("s", 3, {});
    using Inputs = std::vector<StreamMapping>;
    const std::pair<Inputs, std::size_t> rows[] = {
        {{}, 2}, // only the second normal has a wrong size
        {{StreamMapping(NORMAL, stream, 0)}, 0},
        {{StreamMapping(VERTEX, stream, 0), StreamMapping(NORMAL, stream, 2)}, 0},
        {{StreamMapping(VERTEX, stream, -2), StreamMapping(NORMAL, stream, 0)}, 0}};
    for (const auto& [inputs, entries] : rows)
    {
        OwnedMesh owned;
        if (!inputs.empty())
        {
            owned.mesh->addVerticesMapping(StreamMapping(POSITION, makeStream("p", 3, {}), 0));
        }
        const auto primitive = owned.addTriangles(inputs);
        const VertexPtr odd = makeVertex(1.0f, 1.0f, 1.0f);
        odd->setNormal({1.0f, 2.0f});
        testing::internal::CaptureStdout();
        EXPECT_FALSE(primitive->addTriangle(
            boost::make_shared<Triangle>(makeCorner(1.0f, 0.0f, 1.0f), odd, odd), true));
        EXPECT_THAT(testing::internal::GetCapturedStdout(),
                    HasSubstr(" [ERROR] Invalid stream mapping index for this vertex semantic."));
        EXPECT_EQ(primitive->getIndexStream().size(), entries);
    }
}

} // namespace
} // namespace velmoran::scene
