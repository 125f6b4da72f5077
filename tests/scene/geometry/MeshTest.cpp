#include "tests/scene/geometry/GeometryBuilders.h"

#include <tuple>

namespace velmoran::scene
{
namespace
{
using ::testing::HasSubstr;

TEST(Mesh, FindsRemovesAndKeepsTheFirstOfSeveral)
{
    Mesh mesh("m", "");
    const StreamPtr first = makeStream("a", 1, {});
    const StreamPtr second = makeStream("a", 2, {});
    mesh.setStreams({first, StreamPtr(), second, first});
    mesh.addStream(StreamPtr());
    EXPECT_EQ(mesh.getStream("a"), first);
    mesh.removeStream(first);
    EXPECT_THAT(mesh.getStreams(), ElementsAre(second, first));
    mesh.removeStream(makeStream("a", 1, {}));
    EXPECT_EQ(mesh.getStreams().size(), 2u);
    EXPECT_FALSE(mesh.getStream("b"));

    mesh.setVertices({StreamMapping(POSITION, first, 0), StreamMapping(POSITION, second, 1)});
    mesh.addVerticesMapping(StreamMapping(POSITION, second, 2));
    ASSERT_EQ(mesh.getVertices().size(), 1u);
    EXPECT_EQ(mesh.getVertices()[0].getStream(), first);
}

TEST(Mesh, CloneHasStreamsOfItsOwnButInputsThatPointAtTheOldOnes)
{
    OwnedMesh owned;
    const StreamPtr positions = makeStream("p", 3, {1.0f, 2.0f, 3.0f});
    owned.mesh->addStream(positions);
    owned.mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    owned.addTriangles({StreamMapping(VERTEX, positions, 0)}, {0, 0, 0})->setMaterialSymbol("red");

    OwnedMesh copy;
    copy.mesh = boost::dynamic_pointer_cast<Mesh>(owned.mesh->clone());
    EXPECT_EQ(copy.mesh->getID() + copy.mesh->getName(), "mMesh");
    EXPECT_NE(copy.mesh->getStream("p"), positions);
    EXPECT_EQ(copy.mesh->getStream("p")->getData(), positions->getData());
    EXPECT_EQ(copy.mesh->getVertices()[0].getStream(), positions);
    const IMeshPrimitivePtr primitive = copy.mesh->getPrimitive(0);
    EXPECT_EQ(primitive->getStreamMapping()[0].getStream(), positions);
    EXPECT_THAT(primitive->getIndexStream(), ElementsAre(0u, 0u, 0u));
    EXPECT_EQ(primitive->getMaterialSymbol(), "velmoran_material");
    EXPECT_EQ(boost::static_pointer_cast<TriangleMeshPrimitive>(primitive)->getMesh(), copy.mesh);
}

TEST(Mesh, LivesUntilItsPrimitivesAreCleared)
{
    MeshPtr mesh = makeMeshOf("s", "m");
    Mesh& held = *mesh;
    const boost::weak_ptr<Mesh> watched = mesh;
    mesh.reset();
    ASSERT_FALSE(watched.expired());
    held.clearPrimitives(); // takes the mesh itself along
    EXPECT_TRUE(watched.expired());
}

// VERTEX at offsets 0 and 1, NORMAL and TEXCOORD at 2; positions and normals in the vertices list.
class Locating : public testing::Test
{
protected:
    Locating()
    {
        owned.mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
        owned.mesh->addVerticesMapping(StreamMapping(NORMAL, positions, 0));
        owned.mesh->addVerticesMapping(StreamMapping("unknown", positions, 0));
    }

    OwnedMesh owned;
    StreamPtr positions = makeStream("p", 3, {});
    StreamPtr normals = makeStream("n", 3, {});
    TriangleMeshPrimitivePtr primitive = owned.addTriangles(
        {StreamMapping("unknown", StreamPtr(), 5), StreamMapping(VERTEX, StreamPtr(), 0),
         StreamMapping(NORMAL, normals, 2), StreamMapping(TEXCOORD, StreamPtr(), 2),
         StreamMapping(VERTEX, StreamPtr(), 1)});
};

TEST_F(Locating, FindsOwnInputsFirstAndOthersThroughTheLastVertexInput)
{
    const std::tuple<StreamSemantic, int, int, StreamPtr> rows[] = {
        {VERTEX, 1, 0, StreamPtr()}, {NORMAL, 2, 2, normals},      {TEXCOORD, 3, 2, StreamPtr()},
        {POSITION, 4, 1, positions}, {COLOR, -1, -1, StreamPtr()}, {INVALID, -1, -1, StreamPtr()}};
    testing::internal::CaptureStdout();
    for (const auto& [semantic, index, offset, stream] : rows)
    {
        SCOPED_TRACE(streamSemanticToString(semantic));
        EXPECT_EQ(primitive->getStreamMappingIndexForSemantic(semantic), index);
        EXPECT_EQ(primitive->getStreamMappingOffsetForSemantic(semantic), offset);
        EXPECT_EQ(primitive->getStreamBySemantic(semantic), stream);
    }
    EXPECT_THAT(testing::internal::GetCapturedStdout(), IsEmpty());
    EXPECT_EQ(primitive->getIndexStreamStride(), 4u); // offsets 5, 0, 2 and 1
}

TEST_F(Locating, ReportsAMissingVertexInput)
{
    const TriangleMeshPrimitive empty(owned.mesh, {});
    const TriangleMeshPrimitive normalsOnly(MeshPtr(), {StreamMapping(NORMAL, normals, 0)});
    for (const TriangleMeshPrimitive* broken : {&empty, &normalsOnly})
    {
        testing::internal::CaptureStdout();
        EXPECT_EQ(broken->getStreamMappingOffsetForSemantic(VERTEX), -1);
        EXPECT_THAT(
            testing::internal::GetCapturedStdout(),
            HasSubstr(" [ERROR] Found a TriangleMeshPrimitive with no VERTEX stream mapping."));
    }
    EXPECT_EQ(normalsOnly.getStreamMappingIndexForSemantic(NORMAL), 0);
}

TEST(Primitive, CreatesTheStreamsThatAnElementLacks)
{
    OwnedMesh owned;
    const auto primitive = owned.addTriangles({});
    const float values[] = {0.0f, 0.0f, 1.0f};
    const auto ask = [&](StreamSemantic semantic, int size, bool share)
    {
        return primitive->validateStreamStateForVertexElement(
            VertexElement::copyOf(semantic, size, values), share);
    };
    const StreamPtr positions = ask(POSITION, 3, true);
    EXPECT_EQ(positions->getID(), "position_stream");
    EXPECT_FALSE(positions->getAllowDuplicates());
    const StreamPtr normals = ask(NORMAL, 2, false);
    EXPECT_EQ(normals->getID(), "NORMAL_stream");
    EXPECT_TRUE(normals->getAllowDuplicates());
    EXPECT_EQ(ask(NORMAL, 3, true), normals); // there already, whatever its stride
    ask(COLOR, 1, true);

    EXPECT_EQ(primitive->getStreamMapping()[0].getStream()->getID(), "m_vertices");
    EXPECT_EQ(primitive->getStreamMappingOffsetForSemantic(COLOR), 2); // behind the normals
    EXPECT_FALSE(primitive->validateStreamStateForVertexElement(VertexElementPtr(), true));
    EXPECT_FALSE(ask(INVALID, 1, true));
}
} // namespace
} // namespace velmoran::scene
