#include "scene/geometry/GeometryManager.h"
#include "tests/scene/Numbers.h"
#include "tests/scene/SceneUnderTest.h"
#include "tests/scene/geometry/GeometryBuilders.h"

#include <cmath>
#include <random>

namespace velmoran::scene
{
namespace
{
constexpr float NAN_ = NOT_A_NUMBER;

// A square in the plane z = 0 of the triangles 0 1 2 and 0 2 3; position 4 is not used.
class NormalsOfASquare : public testing::Test
{
protected:
    NormalsOfASquare()
    {
        positions = makeStream("positions", 3, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 9, 9, 9});
        owned.mesh->addStream(positions);
        owned.mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    }

    StreamPtr calculated() const
    {
        owned.mesh->recalculateVertexNormals();
        return owned.mesh->getStream("VM_Calculated_Normals");
    }

    OwnedMesh owned;
    StreamPtr positions;
    const std::vector<unsigned int> square = {0, 1, 2, 0, 2, 3};
};
} // namespace

TEST_F(NormalsOfASquare, ComeIntoANewStreamWhereThereAreNone)
{
    owned.addTriangles({VERTEX_INPUT}, square);
    const StreamPtr normals = calculated();
    ASSERT_TRUE(normals);
    EXPECT_THAT(normals->getData(),
                areFloats({0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, NAN_, NAN_, NAN_}));
    EXPECT_EQ(normals->getCount(), 0);
    ASSERT_EQ(owned.mesh->getVertices().size(), 2U);
    EXPECT_EQ(owned.mesh->getVertices()[1].getStream(), normals);

    // The second time they have a place: in the same stream, whose count stays.
    positions->setData({0, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1});
    normals->setCount(77);
    owned.mesh->recalculateVertexNormals();
    EXPECT_EQ(owned.mesh->getStreams().size(), 2U);
    EXPECT_THAT(normals->getData(), areFloats({1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0}));
    EXPECT_EQ(normals->getCount(), 77);
}

TEST_F(NormalsOfASquare, ReadPositionsOfAnyWidth)
{
    owned.addTriangles({VERTEX_INPUT}, square);
    positions->setStride(4);
    positions->setData({0, 0, 0, 9, 1, 0, 0, 8, 1, 1, 0, 7, 0, 1, 0, 6});
    const StreamPtr normals = calculated();
    EXPECT_THAT(normals->getData(), areFloats({0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1}));

    positions->setStride(2);
    positions->setData({0, 0, 0, 1, 1, 1, 1, 0}); // the other way round
    owned.mesh->recalculateVertexNormals();
    EXPECT_THAT(normals->getData(), areFloats({0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1}));
}

TEST_F(NormalsOfASquare, StandOnceInASlotOfTheirOwn)
{
    const StreamPtr old = makeStream("normals", 3, {5, 5, 5});
    owned.mesh->addStream(old);
    positions->mutableData()[11] = NAN_; // z of position 3: the second triangle has no normal
    const auto triangles = owned.addTriangles({VERTEX_INPUT, {NORMAL, old, 1}},
                                              {0, 0, 1, 0, 2, 0, 0, 0, 2, 0, 3, 0, 7, 6});
    owned.mesh->recalculateVertexNormals();
    const StreamPtr normals = triangles->getStreamBySemantic(NORMAL);
    EXPECT_EQ(normals->getID(), "normals");
    EXPECT_THAT(owned.mesh->getStreams(), ElementsAre(positions, normals));
    EXPECT_EQ(old->getData(), std::vector<float>(3, 5.0F));
    // Only position 1 has a normal; each record of another one has a tuple of its own. The
    // last record names no position.
    EXPECT_THAT(triangles->getIndexStream(), ElementsAre(0, 0, 1, 1, 2, 2, 0, 3, 2, 4, 3, 5, 7, 6));
    EXPECT_THAT(normals->getData(), areFloats({NAN_, NAN_, NAN_, 0, 0, 1, NAN_, NAN_, NAN_, NAN_,
                                               NAN_, NAN_, NAN_, NAN_, NAN_, NAN_, NAN_, NAN_}));
}

TEST_F(NormalsOfASquare, CountByTheAngleAtEachTrianglesFirstCorner)
{
    // Triangle 0 1 2 has 45 degrees there; the other one, in the plane y = 0, has 90.
    positions->setData({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 1});
    owned.addTriangles({VERTEX_INPUT}, {0, 1, 2, 0, 3, 1});
    owned.mesh->recalculateVertexNormals();
    const float sine = std::sqrt(0.5F);
    const float length = std::sqrt(1.0F + sine * sine);
    const StreamPtr normals = owned.mesh->getStream("VM_Calculated_Normals");
    EXPECT_THAT(normals->getData(), areFloats({0, 1 / length, sine / length, 0, 1 / length,
                                               sine / length, 0, 0, 1, 0, 1, 0}));
}

TEST_F(NormalsOfASquare, AreSummedOverAllPrimitives)
{
    positions->setData({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1});
    const StreamPtr old = makeStream("normals", 3, {});
    const auto first = owned.addTriangles({VERTEX_INPUT, {NORMAL, old, 1}}, {0, 9, 1, 9, 2, 9});
    const auto second = owned.addTriangles({VERTEX_INPUT, {NORMAL, old, 1}}, {0, 9, 3, 9, 1, 9});
    const auto third = owned.addTriangles({VERTEX_INPUT}, {0, 2, 3});
    owned.mesh->recalculateVertexNormals();
    const StreamPtr normals = first->getStreamBySemantic(NORMAL);
    EXPECT_EQ(second->getStreamBySemantic(NORMAL), normals);
    const float share = 1.0F / std::sqrt(3.0F);
    EXPECT_FLOAT_EQ(normals->getData()[0], share); // position 0 belongs to all three
    EXPECT_EQ(second->getIndexStream()[1], first->getIndexStream()[1]);
    const StreamPtr shared = third->getStreamBySemantic(NORMAL);
    EXPECT_EQ(shared->getID(), "VM_Calculated_Normals");
    EXPECT_FLOAT_EQ(shared->getData()[2], share);
}

TEST_F(NormalsOfASquare, NeverComeFromOutsideTheArrays)
{
    const StreamPtr none;
    const unsigned int far = std::numeric_limits<unsigned int>::max();
    const std::vector<std::vector<StreamMapping>> inputs = {
        {},
        {{NORMAL, none, 0}},
        {VERTEX_INPUT, {NORMAL, none, 1}},
        {VERTEX_INPUT, {NORMAL, positions, 0}, {TEXCOORD, none, 0}},
        {{NORMAL, none, 0}, {TEXCOORD, none, 0}, {VERTEX, none, 0}},
        {{TEXCOORD, none, 0}, {VERTEX, none, 0}, {NORMAL, none, 5}, {NORMAL, none, -1}}};
    for (const std::vector<StreamMapping>& list : inputs)
    {
        OwnedMesh broken;
        broken.mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
        const auto triangles = broken.addTriangles(list, {0, 1, far, 3, 4, 5, far, 2, 1, 0, 5});
        broken.mesh->recalculateVertexNormals();
        triangles->recalculateVertexNormals();
        EXPECT_EQ(triangles->getIndexStream().size(), 11U);
        EXPECT_EQ(positions->getData().size(), 15U);
    }
    owned.mesh->clearVertices();
    owned.addTriangles({VERTEX_INPUT}, square);
    owned.mesh->recalculateVertexNormals(); // without positions nothing happens
    EXPECT_EQ(owned.mesh->getStreams().size(), 1U);
    TriangleMeshPrimitive(MeshPtr(), {VERTEX_INPUT}).recalculateVertexNormals();
}

TEST(Normals, AreThoseOfAModelInDoublePrecision)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<float> number(-1.0F, 1.0F);
    std::vector<float> data(3 * 200);
    std::generate(data.begin(), data.end(), [&] { return number(random); });
    std::vector<unsigned int> indices(3 * 600);
    std::generate(indices.begin(), indices.end(), [&] { return random() % 200; });
    const auto at = [&data](unsigned int i)
    { return Eigen::Vector3f(&data[3 * std::size_t(i)]).cast<double>().eval(); };
    std::vector<Eigen::Vector3d> sums(200, Eigen::Vector3d::Zero());
    for (std::size_t i = 0; i < indices.size(); i += 3)
    {
        const unsigned int a = indices[i];
        const auto edgeTo = [&](unsigned int b)
        { return a == b ? Eigen::Vector3d(0.001, 0, 0) : Eigen::Vector3d(at(b) - at(a)); };
        const Eigen::Vector3d normal =
            edgeTo(indices[i + 1]).normalized().cross(edgeTo(indices[i + 2]).normalized());
        for (std::size_t corner = i; corner < i + 3; ++corner)
        {
            sums[indices[corner]] += normal;
        }
    }
    OwnedMesh owned;
    owned.mesh->addVerticesMapping(StreamMapping(POSITION, makeStream("p", 3, data), 0));
    owned.addTriangles({VERTEX_INPUT}, indices);
    owned.mesh->recalculateVertexNormals();
    const std::vector<float> normals = owned.mesh->getStream("VM_Calculated_Normals")->getData();
    for (std::size_t i = 0; i < sums.size(); ++i)
    {
        const Eigen::Vector3d ours = Eigen::Vector3f(&normals[3 * i]).cast<double>();
        EXPECT_LT((ours - sums[i].normalized()).norm(), 1e-5) << i;
    }
}

TEST(Normals, AreAnnouncedByTheLibrary)
{
    SceneUnderTest scene;
    const GeometryManagerPtr library = scene.manager->getGeometryManager();
    library->setEventManager(scene.eventManager);
    library->addGeometry(boost::make_shared<Mesh>("m", ""));
    library->recalculateVertexNormals("unknown");
    library->recalculateVertexNormals("m");
    EXPECT_THAT(scene.events.take(), ElementsAre("GeometryTopologyUpdate:m"));
}
} // namespace velmoran::scene
