// Geometry after an operation that ran out of memory.

#include "tests/memory/WorldUnderTest.h"

using namespace velmoran::scene;

namespace
{
/// An avatar whose mesh has a face, so that its skin follows when this is refined.
struct SkinnedFaces : WorldUnderTest
{
    SkinnedFaces()
    {
        mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(
            mesh, std::vector<StreamMapping>{StreamMapping(VERTEX, vertices, 0)},
            std::vector<unsigned int>{0, 1, 2, 1, 2, 4}));
    }
};

/// The first triangle of its mesh makes the streams.
struct MeshWithoutStreams : WorldUnderTest
{
    MeshWithoutStreams() { own->addPrimitive(primitive); }

    MeshPtr own =
        boost::dynamic_pointer_cast<Mesh>(manager->getGeometryManager()->getGeometry("own"));
    TriangleMeshPrimitivePtr primitive =
        boost::make_shared<TriangleMeshPrimitive>(own, std::vector<StreamMapping>());
};

/// More tuples than are compared without a table.
std::vector<float> manyTuples(float first)
{
    std::vector<float> values;
    for (int i = 0; i < 60; ++i)
    {
        values.push_back(first + static_cast<float>(i / 2));
    }
    return values;
}

TrianglePtr makeTriangleWithNormals()
{
    std::vector<VertexPtr> corners;
    for (const float x : {3.0F, 4.0F, 5.0F})
    {
        const VertexPtr corner = makeVertex(x, x * x, 0.0F);
        corner->setNormal(0.0F, 0.0F, -1.0F);
        corner->setTextCoord(0, x, 0.5F);
        corners.push_back(corner);
    }
    return boost::make_shared<Triangle>(corners[0], corners[1], corners[2]);
}
} // namespace

TEST(GeometryMemory, LibraryIsAsBeforeWhenItRunsOut)
{
    expectAllOrNothing(
        [](WorldUnderTest& w)
        {
            w.manager->getGeometryManager()->addGeometry(
                boost::make_shared<Mesh>("a geometry with a long name", ""));
        });
    expectAllOrNothing(
        [](WorldUnderTest& w)
        {
            w.manager->getGeometryManager()->replaceGeometry(
                "plate", boost::make_shared<Mesh>("a plate of another name", ""));
        });
}

TEST(GeometryMemory, NormalsAreAsBeforeWhenItRunsOut)
{
    expectAllOrNothing([](WorldUnderTest& w)
                       { w.manager->getGeometryManager()->recalculateVertexNormals("plate"); });
    expectAllOrNothing<SkinnedFaces>(
        [](SkinnedFaces& w)
        { w.manager->getGeometryManager()->recalculateVertexNormals("human-template-lib"); });
}

TEST(GeometryMemory, MeshIsAsBeforeWhenRefiningRunsOut)
{
    expectAllOrNothing(
        [](WorldUnderTest& w)
        { w.manager->getGeometryManager()->subDivideGeometry("plate", ControllerPtr()); });
    expectAllOrNothing<SkinnedFaces>(
        [](SkinnedFaces& w) {
            w.manager->getGeometryManager()->subDivideGeometry("human-template-lib", w.controller);
        });
}

TEST(GeometryMemory, PrimitiveIsAsBeforeWhenAddingATriangleRunsOut)
{
    expectAllOrNothing([](WorldUnderTest& w)
                       { w.triangles->addTriangle(makeTriangleWithNormals(), true); });
    expectAllOrNothing<MeshWithoutStreams>(
        [](MeshWithoutStreams& w) { w.primitive->addTriangle(makeTriangleWithNormals(), true); });
}

TEST(GeometryMemory, StreamIsAsBeforeWhenInsertingRunsOut)
{
    expectAllOrNothing(
        [](WorldUnderTest& w)
        {
            const float values[] = {7.0F, 8.0F, 9.0F};
            w.plate->getStreams()[0]->insertValue(3, values);
        });
    // With a table, and without.
    for (const std::size_t count : {6, 60})
    {
        expectAllOrNothing(
            [count](WorldUnderTest& w)
            {
                std::vector<float> values = manyTuples(0.0F);
                values.resize(count);
                w.plate->getStreams()[0]->insertValues(values);
            });
    }
}
