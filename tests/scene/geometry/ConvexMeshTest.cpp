#include "scene/geometry/ConvexMesh.h"

#include "tests/scene/geometry/GeometryBuilders.h"

namespace velmoran::scene
{
namespace
{
template <typename Kind>
boost::shared_ptr<Kind> makePoint(const std::string& id, float x)
{
    const auto mesh = boost::make_shared<Kind>(id, "");
    mesh->addVerticesMapping(StreamMapping(POSITION, makeStream("p", 3, {x, x, x}), 0));
    return mesh;
}
} // namespace

TEST(ConvexMesh, TellsTheBoundsOfWhatItIsTheHullOf)
{
    const ConvexMeshPtr hull = makePoint<ConvexMesh>("hull", 1.0F);
    const MeshPtr mesh = makePoint<Mesh>("mesh", 2.0F);
    EXPECT_EQ(hull->getType(), IGeometry::CONVEX_MESH);
    EXPECT_EQ(hull->getBVMin().x(), 1.0F);

    hull->setConvexHullOf(mesh);
    hull->setConvexHullOf(IGeometryPtr());
    EXPECT_EQ(hull->getConvexHullOf(), mesh);
    EXPECT_EQ(hull->getBVMin(), mesh->getBVMin());
    EXPECT_EQ(hull->getBVMax().x(), 2.0F);
    EXPECT_EQ(hull->getBVCenter().x(), 2.0F);

    const IGeometryPtr copy = hull->clone();
    EXPECT_EQ(copy->getType(), IGeometry::MESH);
    EXPECT_FALSE(boost::dynamic_pointer_cast<ConvexMesh>(copy));
    EXPECT_EQ(copy->getBVMin().x(), 1.0F);
}

TEST(ConvexMesh, IsNeverLinkedToItself)
{
    const ConvexMeshPtr a = makePoint<ConvexMesh>("a", 1.0F);
    const ConvexMeshPtr b = makePoint<ConvexMesh>("b", 2.0F);
    a->setConvexHullOf(a);
    EXPECT_FALSE(a->getConvexHullOf());
    a->setConvexHullOf(b);
    b->setConvexHullOf(a);
    EXPECT_FALSE(b->getConvexHullOf());
    EXPECT_EQ(a->getBVMin().x(), 2.0F);
}
} // namespace velmoran::scene
