#include "tests/scene/geometry/GeometryBuilders.h"

namespace velmoran::scene
{
namespace
{
TEST(Vertex, ReplacesAnElementOfTheSameSemanticInItsPlace)
{
    Vertex vertex;
    vertex.setNormal(1.0f, 0.0f, 0.0f);
    vertex.setColor(0.1f, 0.2f, 0.3f, 0.4f);
    vertex.setNormal({0.0f, 0.0f, 1.0f});
    ASSERT_EQ(vertex.getElementCount(), 2u);
    EXPECT_EQ(vertex.getElementAt(0), vertex.getNormal());
    EXPECT_THAT(valuesOf(vertex.getNormal()), ElementsAre(0.0f, 0.0f, 1.0f));

    const float tangent[] = {9.0f};
    vertex.setTangent(7.0f, 8.0f, 9.0f);
    vertex.addElement(VertexElement::copyOf(TANGENT, 1, tangent), false);
    EXPECT_EQ(vertex.getTangent()->size, 3);
    EXPECT_FALSE(vertex.getElementAt(3) || vertex.getBinormal());
}

TEST(Vertex, KeepsTextureCoordinatesBySet)
{
    const std::pair<int, StreamSemantic> rows[] = {
        {0, TEXCOORD}, {1, TEXCOORD1}, {7, TEXCOORD7}, {8, INVALID}, {-1, INVALID}};
    for (const auto& [set, semantic] : rows)
    {
        Vertex vertex;
        vertex.setTextCoord(set, 0.25f, 0.75f);
        EXPECT_THAT(valuesOf(vertex.getTexCoord(semantic)), ElementsAre(0.25f, 0.75f));
        EXPECT_EQ(vertex.getTexCoord(set), vertex.getElementAt(0)) << set;
    }
}

TEST(Vertex, OwnsArraysThatItTakesOverAsLongAsACopyListsThem)
{
    auto source = boost::make_shared<Vertex>();
    source->setPosition(2, new float[2]{1.0f, 2.0f});
    source->setTextCoord(0, 1, new float[1]{3.0f});
    const Vertex copy(*source);
    source->setPosition(5.0f, 6.0f); // a new element: the copy keeps the old one
    source.reset();
    EXPECT_THAT(valuesOf(copy.getPosition()), ElementsAre(1.0f, 2.0f));
    EXPECT_THAT(valuesOf(copy.getTexCoord(0)), ElementsAre(3.0f));
}

TEST(Vertex, TellsItsPositionWithMissingComponentsAsZero)
{
    Vertex vertex;
    testing::internal::CaptureStdout();
    vertex.print();
    vertex.setPosition({1.0f, 2.5f});
    vertex.print();
    vertex.setPosition(1.0f, 2.5f, -3.0f, 4.0f);
    vertex.print();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "0, 0, 01, 2.5, 01, 2.5, -3");
}
} // namespace
} // namespace velmoran::scene
