#include "scene/deform/Controller.h"
#include "scene/deform/Skin.h"
#include "tests/scene/Numbers.h"
#include "tests/scene/geometry/GeometryBuilders.h"

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3f;

/// A mesh with these positions in its vertices list.
struct PositionedMesh : OwnedMesh
{
    explicit PositionedMesh(const std::vector<float>& floats, int stride = 3)
        : positions(makeStream("p", stride, floats))
    {
        mesh->addStream(positions);
        mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    }

    StreamPtr positions;
};

const std::vector<StreamMapping> VERTICES_ONLY = {VERTEX_INPUT};

TEST(Bounds, OfAMeshAreThoseOfItsPrimitivesAndItsCentreTheirSum)
{
    // Bounds begin at the origin: (0, 0, 0) to (2, 0, 0), and to (6, 0, 0).
    PositionedMesh data({2, 0, 0, 6, 0, 0, -9, -9, -9});
    data.addTriangles(VERTICES_ONLY, {0, 0, 0});
    data.addTriangles(VERTICES_ONLY, {1, 0, 7}); // the last index names nothing
    EXPECT_EQ(data.mesh->getBVMax(), Vector3f(6, 0, 0));
    EXPECT_EQ(data.mesh->getBVMin(), Vector3f(0, 0, 0));
    EXPECT_EQ(data.mesh->getBVCenter(), Vector3f(4, 0, 0));

    Controller controller("c", "");
    EXPECT_EQ(controller.getBVMax(), Vector3f(0, 0, 0));
    controller.setSkin(boost::make_shared<Skin>(data.mesh));
    EXPECT_EQ(controller.getBVMax(), Vector3f(6, 0, 0));
    EXPECT_EQ(controller.getBVCenter(), Vector3f(4, 0, 0));
}

TEST(Bounds, AreComputedAtTheFirstDemandAndAfterTheListsHaveChanged)
{
    PositionedMesh data({1, 2, 3, 4, 5, 6});
    EXPECT_EQ(data.mesh->getBVMax(), Vector3f(4, 5, 6)); // sampled: every position
    EXPECT_EQ(data.mesh->getBVMin(), Vector3f(1, 2, 3));
    data.positions->setData({7, 7, 7});
    EXPECT_EQ(data.mesh->getBVMax(), Vector3f(4, 5, 6));
    data.mesh->calculateBV();
    EXPECT_EQ(data.mesh->getBVMin(), Vector3f(7, 7, 7));
    data.addTriangles(VERTICES_ONLY, {0, 0, 0});
    EXPECT_EQ(data.mesh->getBVMin(), Vector3f(0, 0, 0));
    EXPECT_EQ(data.mesh->getBVCenter(), Vector3f(3.5F, 3.5F, 3.5F));
}

TEST(Bounds, OfALargeMeshWithoutPrimitivesAreSampled)
{
    // 600,000 floats: every sixth position counts.
    std::vector<float> floats(600000, 0.0F);
    floats[3 * 6] = 1.0F;
    floats[3 * 7 + 1] = 1.0F;
    PositionedMesh data(floats);
    EXPECT_EQ(data.mesh->getBVMax(), Vector3f(1, 0, 0));
}

TEST(Bounds, LeaveOutWhatCantBeRead)
{
    PositionedMesh unordered({NOT_A_NUMBER, 9, 9, 1, 1, 1, 2, 2, NOT_A_NUMBER});
    EXPECT_EQ(unordered.mesh->getBVMax(), Vector3f(1, 1, 1));
    unordered.addTriangles(VERTICES_ONLY, {1, 0, 2});
    EXPECT_EQ(unordered.mesh->getBVMax(), Vector3f(1, 1, 1));

    PositionedMesh flat({1, 2, 3, 4}, 2);
    EXPECT_EQ(flat.mesh->getBVMax(), Vector3f(0, 0, 0));
    const auto primitive = flat.addTriangles(VERTICES_ONLY, {0, 1, 1});
    EXPECT_EQ(flat.mesh->getBVMax(), Vector3f(0, 0, 0));

    flat.mesh->clearVertices();
    testing::internal::CaptureStdout();
    primitive->calculateMinMax();
    EXPECT_NE(testing::internal::GetCapturedStdout().find(
                  "[WARN] could not calculate min/max for MeshPrimitive. No Position semantic."),
              std::string::npos);
}
} // namespace
} // namespace velmoran::scene
