#include "tests/examples/ColladaText.h"

#include "scene/geometry/ConvexMesh.h"
#include "scene/geometry/Polygon.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

// Polygons that stay polygons, corners whose inputs share offsets, and convex meshes.
namespace velmoran::examples::test
{
namespace
{
class ColladaPolygonsTest : public ColladaTest
{
protected:
    ReadResult readKeeping(const std::string& body)
    {
        ReadOptions options;
        options.keepPolygons = true;
        const ReadResult result =
            ColladaReader().readText(document(body), "doc.dae", m_scene, options);
        EXPECT_TRUE(result.ok) << result.error;
        return result;
    }

    template <typename Primitive>
    boost::shared_ptr<Primitive> getPrimitive(unsigned int index)
    {
        return boost::dynamic_pointer_cast<Primitive>(getMesh("quad")->getPrimitive(index));
    }
};

using Vec3 = core::utils::Vector<float, 3>;
using scene::PolygonMeshPrimitive;
using scene::TriangleMeshPrimitive;

std::string convexMesh(const std::string& id, const std::string& content)
{
    return "<library_geometries><geometry id=\"" + id + "\"><convex_mesh " + content +
           "</geometry></library_geometries>";
}
} // namespace

TEST_F(ColladaPolygonsTest, FacesOfManyCornersStayWhatTheyAre)
{
    const std::string v = VERTEX_INPUT;
    const ReadResult result =
        readKeeping(quad("<polylist material=\"paint\" count=\"3\">" + v +
                         "<vcount>4 2 3</vcount><p>0 1 2 3 0 1 3 2 1</p></polylist>" +
                         "<polygons count=\"2\">" + v +
                         "<p>0 1 2</p><ph><p>3 2 1 0</p><h>1 2 3</h></ph></polygons>" +
                         "<trifans>" + v + "<p>0 1 2 3</p></trifans>") +
                    visualScene(""));
    EXPECT_THAT(result.warnings,
                ElementsAre(HasSubstr("1 faces of less than three corners are left out"),
                            HasSubstr("the holes of its polygons are left out")));
    const auto list = getPrimitive<PolygonMeshPrimitive>(0);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->getMaterialSymbol(), "paint");
    EXPECT_THAT(list->getPolygonStream(), ElementsAre(Pair(4, 0), Pair(3, 4)));
    EXPECT_THAT(list->getIndexStream(), ElementsAre(0, 1, 2, 3, 3, 2, 1));
    const auto polygons = getPrimitive<PolygonMeshPrimitive>(1);
    ASSERT_TRUE(polygons);
    EXPECT_EQ(polygons->getTotalVertexCount(), 7U);
    EXPECT_EQ(polygons->getPolygonAt(1)->getVertexAt(0)->getPositionVector(), Vec3(0, 1, 0));
    EXPECT_TRUE(getPrimitive<TriangleMeshPrimitive>(2)) << "fans are lists of triangles";
}

// The library reads the input at place n from entry n of a record.
TEST_F(ColladaPolygonsTest, InputsThatShareAnOffsetCanBeReadByTheLibrary)
{
    const std::string inputs =
        "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"0\"/>"
        "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"0\" set=\"1\"/>"
        "<input semantic=\"VERTEX\" source=\"#v\" offset=\"1\"/>";
    const std::string body =
        quad("<triangles count=\"1\">" + inputs + "<p>0 0 1 1 0 2</p></triangles><polylist>" +
             inputs + "<vcount>3</vcount><p>0 3 1 2 0 1</p></polylist>");
    readKeeping(body);
    EXPECT_THAT(getPrimitive<TriangleMeshPrimitive>(0)->getIndexStream(),
                ElementsAre(0, 0, 0, 1, 1, 1, 0, 0, 2));
    const scene::TrianglePtr triangle = getPrimitive<TriangleMeshPrimitive>(0)->getTriangleAt(0);
    EXPECT_EQ(triangle->getVertexAt(1)->getPositionVector(), Vec3(1, 0, 0));
    EXPECT_EQ(triangle->getVertexAt(2)->getPositionVector(), Vec3(1, 1, 0));
    EXPECT_EQ(triangle->getVertexAt(1)->getTexCoord(0)->values[1], 1.0F);
    EXPECT_EQ(triangle->getVertexAt(2)->getTexCoord(1)->values[1], 0.0F);
    const auto polygon = getPrimitive<PolygonMeshPrimitive>(1);
    ::testing::internal::CaptureStdout(); // the library says what it doesn't assemble
    EXPECT_EQ(polygon->getPolygonAt(0)->getVertexAt(1)->getPositionVector(), Vec3(1, 1, 0));
    EXPECT_THAT(::testing::internal::GetCapturedStdout(), HasSubstr("TEXCOORD1 not handled"));

    EXPECT_THAT(read(quad("<triangles>" + repeat(40, VERTEX_INPUT) + "</triangles>")).error,
                HasSubstr("it has 40 inputs that share offsets"));
}

TEST_F(ColladaPolygonsTest, ConvexMeshesKnowWhatTheyEnclose)
{
    const ReadResult result = readFine(
        convexMesh("hull", "convex_hull_of=\"#quad\"/>") +
        convexMesh("outer", "convex_hull_of=\"#hull\"/>") +
        convexMesh("own", ">" + source("p", 3, 3, "0 0 0 9 0 0 0 9 0") +
                              "<vertices id=\"w\"><input semantic=\"POSITION\" source=\"#p\"/>"
                              "</vertices><triangles><input semantic=\"VERTEX\" source=\"#w\" "
                              "offset=\"0\"/><p>0 1 2</p></triangles></convex_mesh>") +
        quad(triangleList("0 1 2")) +
        "<library_geometries><geometry id=\"curve\"><spline/></geometry></library_geometries>" +
        convexMesh("around", "convex_hull_of=\"#curve\"/>") +
        visualScene("<node id=\"n\"><instance_geometry url=\"#hull\"/></node>"));
    EXPECT_THAT(result.warnings,
                ElementsAre(HasSubstr("it is not a mesh"),
                            HasSubstr("the geometry whose hull it is was left out")));
    const auto getHull = [this](const std::string& id)
    { return boost::dynamic_pointer_cast<scene::ConvexMesh>(getMesh(id)); };
    ASSERT_TRUE(getHull("hull") && getHull("outer") && getHull("own") && getHull("around"));
    EXPECT_EQ(getHull("hull")->getConvexHullOf(), getMesh("quad"));
    EXPECT_EQ(getHull("outer")->getConvexHullOf(), getMesh("quad"));
    EXPECT_EQ(getHull("hull")->getBVMax(), Eigen::Vector3f(1, 1, 0));
    EXPECT_FALSE(getHull("own")->getConvexHullOf());
    EXPECT_EQ(getHull("own")->getBVMax(), Eigen::Vector3f(9, 9, 0));
    EXPECT_FALSE(getHull("around")->getConvexHullOf());
    EXPECT_EQ(m_scene->getNodeByID("n")->getInstanceGeometry(0)->getGeometry(), getHull("hull"));
}

TEST_F(ColladaPolygonsTest, HullsOfNothingAndOfThemselvesAreRefused)
{
    EXPECT_THAT(read(convexMesh("a", "convex_hull_of=\"#gone\"/>")).error,
                HasSubstr("\"#gone\", but there is no such <geometry>"));
    EXPECT_THAT(read(convexMesh("a", "convex_hull_of=\"#b\"/>") +
                     convexMesh("b", "convex_hull_of=\"#a\"/>"))
                    .error,
                HasSubstr("it is a convex hull of itself"));

    // Long chains take no time and no stack.
    std::string chain = quad("");
    for (int i = 0; i < 10000; ++i)
    {
        chain += convexMesh("c" + std::to_string(i),
                            "convex_hull_of=\"#" + (i == 0 ? "quad" : "c" + std::to_string(i - 1)) +
                                "\"/>");
    }
    readFine(chain + visualScene(""));
    const auto last = boost::dynamic_pointer_cast<scene::ConvexMesh>(getMesh("c9999"));
    EXPECT_EQ(last->getConvexHullOf(), getMesh("quad"));
}
} // namespace velmoran::examples::test
