#include "scene/geometry/Polygon.h"

#include "scene/geometry/PolygonMeshPrimitive.h"
#include "tests/scene/geometry/GeometryBuilders.h"

#include <limits>

namespace velmoran::scene
{
namespace
{
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;
using TableEntry = PolygonMeshPrimitive::TableEntry;

// A quad and a triangle beside it in the plane z = 0:
//
//   3---2
//   |   | \                  .
//   0---1--4
class QuadAndTriangle : public testing::Test
{
protected:
    QuadAndTriangle() { owned.mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0)); }

    PolygonMeshPrimitivePtr makePrimitive(const std::vector<StreamMapping>& inputs,
                                          const std::vector<unsigned int>& indices,
                                          const std::vector<unsigned int>& counts) const
    {
        const auto primitive =
            boost::make_shared<PolygonMeshPrimitive>(owned.mesh, inputs, indices, counts);
        owned.mesh->addPrimitive(primitive);
        return primitive;
    }

    OwnedMesh owned;
    StreamPtr positions = makeStream("positions", 3, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 2, 0, 0});
    StreamMapping vertexInput{VERTEX, StreamPtr(), 0};
};

std::vector<float> xOfCorners(const IPrimitivePtr& face)
{
    std::vector<float> x;
    for (const VertexPtr& corner : face->getVertexArray())
    {
        x.push_back(corner->getPositionVector()[0]);
    }
    return x;
}
} // namespace

TEST_F(QuadAndTriangle, AreReadInOrder)
{
    const auto primitive = makePrimitive({vertexInput}, {0, 1, 2, 3, 1, 4, 2}, {4, 3});
    EXPECT_EQ(primitive->getType(), IMeshPrimitive::POLYGONS);
    EXPECT_EQ(primitive->getTotalVertexCount(), 7U);
    EXPECT_THAT(primitive->getPolygonStream(), ElementsAre(TableEntry(4, 0), TableEntry(3, 4)));
    ASSERT_EQ(primitive->getPrimitives().size(), 2U);
    EXPECT_THAT(xOfCorners(primitive->getPrimitiveAt(0)), ElementsAre(0, 1, 1, 0));
    EXPECT_THAT(xOfCorners(primitive->getPrimitives()[1]), ElementsAre(1, 2, 1));
    EXPECT_FALSE(primitive->getPolygonAt(2));

    const auto copy = boost::dynamic_pointer_cast<PolygonMeshPrimitive>(
        primitive->clone(boost::make_shared<Mesh>("other", "")));
    EXPECT_EQ(copy->getTotalVertexCount(), 7U);
    EXPECT_EQ(copy->getPolygonStream(), primitive->getPolygonStream());
    EXPECT_EQ(owned.mesh->getBVMax(), Eigen::Vector3f(2, 1, 0));
}

TEST_F(QuadAndTriangle, TakeRecordsAsWideAsTheirOffsetsAndReportInputsThatTheySkip)
{
    const StreamPtr none;
    const auto primitive =
        makePrimitive({vertexInput, {TEXCOORD, none, 1}, {TEXCOORD1, none, 2}, {TANGENT, none, 2}},
                      {0, 9, 9, 1, 9, 9, 2, 9, 9}, {3});
    CaptureStdout();
    EXPECT_THAT(xOfCorners(primitive->getPolygonAt(0)), ElementsAre(0, 1, 1));
    // The last corner's record ends the index stream before its fourth input.
    EXPECT_EQ(GetCapturedStdout(), "TEXCOORD1 not handled\nTANGENT not handled\n"
                                   "TEXCOORD1 not handled\nTANGENT not handled\n"
                                   "TEXCOORD1 not handled\n");
}

TEST_F(QuadAndTriangle, AreNotReadBeyondTheIndices)
{
    constexpr unsigned int MANY = std::numeric_limits<unsigned int>::max();
    const auto primitive = makePrimitive({vertexInput}, {0, 1, 77}, {3, 1, MANY, MANY, 2});
    EXPECT_EQ(primitive->getCount(), 5U);
    EXPECT_THAT(xOfCorners(primitive->getPolygonAt(0)), ElementsAre(0, 1, 0)); // 77: no tuple
    for (unsigned int i = 1; i < 5; ++i)
    {
        EXPECT_FALSE(primitive->getPolygonAt(i)) << i;
    }
    EXPECT_FALSE(makePrimitive({}, {0, 1, 2}, {3})->getPolygonAt(0));
}

TEST_F(QuadAndTriangle, AreAddedWithTheStreamsThatTheyNeed)
{
    const OwnedMesh empty;
    const auto primitive =
        boost::make_shared<PolygonMeshPrimitive>(empty.mesh, std::vector<StreamMapping>());
    empty.mesh->addPrimitive(primitive);
    const auto makePolygon = [](const std::vector<VertexPtr>& corners)
    {
        const PolygonPtr polygon = boost::make_shared<Polygon>();
        for (const VertexPtr& corner : corners)
        {
            corner->setNormal(0, 0, 1);
            polygon->addVertex(corner);
        }
        return polygon;
    };
    EXPECT_TRUE(primitive->addPolygon(makePolygon({makeVertex(0, 0, 0), makeVertex(1, 0, 0),
                                                   makeVertex(1, 1, 0), makeVertex(0, 1, 0)}),
                                      true));
    // A normal of another width than the stream's fits no slot: a part of the face stays
    // behind, of which the table knows nothing.
    const VertexPtr odd = makeVertex(7, 7, 7);
    odd->setNormal({1.0F});
    const PolygonPtr broken = makePolygon({makeVertex(5, 5, 5)});
    broken->addVertex(odd);
    EXPECT_FALSE(primitive->addPolygon(broken, true));
    EXPECT_FALSE(primitive->addPolygon(PolygonPtr(), true));
    EXPECT_TRUE(primitive->addPolygon(
        makePolygon({makeVertex(1, 0, 0), makeVertex(2, 0, 0), makeVertex(1, 1, 0)}), true));

    EXPECT_THAT(primitive->getPolygonStream(), ElementsAre(TableEntry(4, 0), TableEntry(3, 10)));
    EXPECT_EQ(primitive->getTotalVertexCount(), 7U);
    EXPECT_THAT(xOfCorners(primitive->getPolygonAt(1)), ElementsAre(1, 2, 1));
    EXPECT_EQ(empty.mesh->getStream("NORMAL_stream")->getData(), (std::vector<float>{0, 0, 1}));
    EXPECT_THAT(primitive->getBVMax(), ElementsAre(7, 7, 7));
}

TEST_F(QuadAndTriangle, SayWhatTheyDoNotOffer)
{
    const auto primitive = makePrimitive({vertexInput}, {0, 1, 2}, {3});
    const PolygonPtr polygon = primitive->getPolygonAt(0);
    const std::vector<float> before = positions->getData();
    CaptureStdout();
    owned.mesh->print();
    owned.mesh->recalculateVertexNormals();
    owned.mesh->subDivide(ControllerPtr());
    EXPECT_EQ(polygon->getFaceNormal(), Eigen::Vector3f::Zero());
    polygon->applyTransform(Eigen::Matrix4f::Zero());
    EXPECT_FALSE(polygon->intersects(RayPtr()));
    EXPECT_FALSE(polygon->intersects(Eigen::Vector3f(-9, -9, -9), Eigen::Vector3f(9, 9, 9)));
    polygon->print();
    EXPECT_EQ(GetCapturedStdout(),
              "Implement me PolygonMeshPrimitive::print()\n"
              "PolygonMeshPrimitive::recalculateVertexNormals(): Implement me!\n"
              "PolygonMeshPrimitive::subDivide(): Implement me!\n"
              "Polygon::getFaceNormal() not implemented yet!\n"
              "Polygon::applyTransform() not implemented yet!\n"
              "Polygon::intersects() not implemented yet!\n"
              "Polygon::intersects() not implemented yet!\n");
    EXPECT_EQ(positions->getData(), before);
    EXPECT_THAT(xOfCorners(polygon), ElementsAre(0, 1, 1));
}
} // namespace velmoran::scene
