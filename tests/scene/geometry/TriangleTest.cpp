#include "tests/scene/geometry/GeometryBuilders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace velmoran::scene
{
namespace
{
using ::testing::ElementsAre;

TEST(Triangle, FaceNormalIsAsLongAsTheSineOfTheFirstAngle)
{
    struct Row
    {
        const char* name;
        VertexPtr third;
        float length;
    };
    const float h = std::sqrt(3.0f);
    for (const Row& row : {Row{"90 degrees", makeVertex(0.0f, 5.0f, 0.0f), 1.0f},
                           Row{"30 degrees", makeVertex(h, 1.0f, 0.0f), 0.5f},
                           Row{"second and third alike", makeVertex(2.0f, 0.0f, 0.0f), 0.0f}})
    {
        SCOPED_TRACE(row.name);
        const Triangle triangle(makeVertex(0.0f, 0.0f, 0.0f), makeVertex(2.0f, 0.0f, 0.0f),
                                row.third);
        EXPECT_TRUE(
            triangle.getFaceNormal().isApprox(Eigen::Vector3f(0.0f, 0.0f, row.length), 1e-6f) ||
            row.length == triangle.getFaceNormal().norm());
    }
    // The edge without length becomes (0.001, 0, 0).
    const VertexPtr twice = makeVertex(0.0f, 0.0f, 0.0f);
    EXPECT_EQ(Triangle(twice, twice, makeVertex(0.0f, 4.0f, 0.0f)).getFaceNormal(),
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
    EXPECT_EQ(triangle.getVertexArray().size(), 3u);
    Triangle(VertexPtr(), VertexPtr(), VertexPtr()).applyTransform(Eigen::Matrix4f::Identity());
}
} // namespace
} // namespace velmoran::scene
