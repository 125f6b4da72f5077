#include "tests/scene/geometry/GeometryBuilders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmoran::scene
{
namespace
{
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const char* const NO_VERTEX_INPUT =
    " [ERROR] Found a TriangleMeshPrimitive with no VERTEX stream mapping.";

TEST(Mesh, FindsAndRemovesTheFirstOfItsStreams)
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
    EXPECT_FALSE(mesh.getPrimitive(0));
    EXPECT_EQ(mesh.getVerticesID(), "m_vertices");
}

TEST(Mesh, KeepsTheFirstVerticesMappingOfASemantic)
{
    Mesh mesh("m", "");
    const StreamPtr first = makeStream("a", 3, {});
    mesh.setVertices({StreamMapping(POSITION, first, 0), StreamMapping(POSITION, StreamPtr(), 1)});
    mesh.addVerticesMapping(StreamMapping(POSITION, StreamPtr(), 2));
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
    owned.mesh->setType(IGeometry::CONVEX_MESH);

    OwnedMesh copy;
    copy.mesh = boost::dynamic_pointer_cast<Mesh>(owned.mesh->clone());
    EXPECT_EQ(copy.mesh->getID() + copy.mesh->getName(), "mMesh");
    EXPECT_EQ(copy.mesh->getType(), IGeometry::MESH);
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
    MeshPtr mesh = boost::make_shared<Mesh>("m", "");
    mesh->addPrimitive(
        boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>()));
    mesh->addPrimitive(IMeshPrimitivePtr());
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
    struct Row
    {
        StreamSemantic semantic;
        int index;
        int offset;
        StreamPtr stream;
    };
    testing::internal::CaptureStdout();
    for (const Row& row : {Row{VERTEX, 1, 0, StreamPtr()}, Row{NORMAL, 2, 2, normals},
                           Row{TEXCOORD, 3, 2, StreamPtr()}, Row{POSITION, 4, 1, positions},
                           Row{COLOR, -1, -1, StreamPtr()}, Row{INVALID, -1, -1, StreamPtr()}})
    {
        SCOPED_TRACE(streamSemanticToString(row.semantic));
        EXPECT_EQ(primitive->getStreamMappingIndexForSemantic(row.semantic), row.index);
        EXPECT_EQ(primitive->getStreamMappingOffsetForSemantic(row.semantic), row.offset);
        EXPECT_EQ(primitive->getStreamBySemantic(row.semantic), row.stream);
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
        for (const StreamSemantic semantic : {VERTEX, POSITION, COLOR})
        {
            testing::internal::CaptureStdout();
            EXPECT_EQ(broken->getStreamMappingOffsetForSemantic(semantic), -1);
            EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr(NO_VERTEX_INPUT));
        }
    }
    EXPECT_EQ(empty.getIndexStreamStride(), 0u);
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
    EXPECT_EQ(normals->getStride(), 2);
    EXPECT_TRUE(normals->getAllowDuplicates());
    EXPECT_EQ(ask(NORMAL, 3, true), normals); // there already, whatever its stride
    ask(COLOR, 1, true);

    EXPECT_EQ(owned.mesh->getVertices()[0].getStream(), positions);
    EXPECT_EQ(owned.mesh->getStreams().size(), 3u);
    ASSERT_EQ(primitive->getStreamMapping().size(), 3u);
    EXPECT_EQ(primitive->getStreamMapping()[0].getStream()->getID(), "m_vertices");
    EXPECT_EQ(primitive->getStreamMappingOffsetForSemantic(NORMAL), 1);
    EXPECT_EQ(primitive->getStreamMappingOffsetForSemantic(COLOR), 2);

    EXPECT_FALSE(primitive->validateStreamStateForVertexElement(VertexElementPtr(), true));
    EXPECT_FALSE(ask(INVALID, 1, true));
    EXPECT_FALSE(
        TriangleMeshPrimitive(MeshPtr(), {})
            .validateStreamStateForVertexElement(VertexElement::copyOf(POSITION, 3, values), true));
}

TEST(Primitive, NamesItsType)
{
    EXPECT_EQ(IMeshPrimitive::typeToString(IMeshPrimitive::TRIANGLES), "Triangles");
    EXPECT_EQ(IMeshPrimitive::typeToString(IMeshPrimitive::TRIANGLE_STRIPS), "Triangle Strips");
    EXPECT_EQ(IMeshPrimitive::typeToString(static_cast<IMeshPrimitive::Type>(8)), "Invalid");
    EXPECT_EQ(IMeshPrimitive::typeToString(static_cast<IMeshPrimitive::Type>(0)), "Invalid2");
}
} // namespace
} // namespace velmoran::scene
