#include "examples/scenetool/ObjWriter.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"
#include "tests/examples/ToolFiles.h"
#include "tests/scene/AvatarUnderTest.h"

namespace velmoran::examples::test
{
namespace
{
using scene::makeFloats;

// A mesh with the positions (0,0,0), (1,0,0), (0,1,0), the texture coordinates (0,0),
// (1,0), (0,1) and one normal along z.
class ObjOfOneMesh : public ToolFolder
{
protected:
    ObjOfOneMesh()
    {
        mesh->addVerticesMapping({scene::POSITION, positions, 0});
        node->setID("my node");
        scene->getRoot()->addNode(node);
    }

    ~ObjOfOneMesh() override { mesh->clearPrimitives(); }

    void addTriangles(const std::vector<scene::StreamMapping>& inputs,
                      const std::vector<unsigned int>& indices)
    {
        mesh->addPrimitive(boost::make_shared<scene::TriangleMeshPrimitive>(mesh, inputs, indices));
    }

    scene::InstanceGeometryPtr makeInstance(const scene::MaterialPtr& material) const
    {
        return boost::make_shared<scene::InstanceGeometry>(mesh, material);
    }

    /// The OBJ file without the lines before the first point.
    std::string written()
    {
        result = writeObj(scene, path("mesh.obj"));
        const std::string text = readFile("mesh.obj");
        return text.substr(text.find("\nv ") + 1);
    }

    scene::SceneManagerPtr scene =
        boost::make_shared<scene::SceneManager>(core::event::EventManagerPtr());
    scene::MeshPtr mesh = boost::make_shared<scene::Mesh>("mesh", "");
    scene::StreamPtr vertex = makeFloats("mesh_vertices", 3, {});
    scene::StreamPtr positions = makeFloats("positions", 3, {0, 0, 0, 1, 0, 0, 0, 1, 0});
    scene::StreamPtr textures = makeFloats("textures", 2, {0, 0, 1, 0, 0, 1});
    scene::StreamPtr normals = makeFloats("normals", 3, {0, 0, 2});
    scene::NodePtr node = boost::make_shared<scene::Node>(scene);
    ObjResult result;
};
} // namespace

TEST_F(ObjOfOneMesh, ReadsInputsThatShareAnOffset)
{
    // Positions and texture coordinates go by the first index, the normal by the second.
    addTriangles(
        {{scene::VERTEX, vertex, 0}, {scene::TEXCOORD1, textures, 0}, {scene::NORMAL, normals, 1}},
        {0, 0, 1, 0, 2, 0});
    node->addInstanceGeometry(makeInstance({}));
    EXPECT_EQ(written(), "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 0 1\nvn 0 0 1\n"
                         "g my_node velmoran_material\nusemtl velmoran_material\n"
                         "f 1/1/1 2/2/1 3/3/1\n");
    EXPECT_EQ(result.triangles, 1U);
    EXPECT_EQ(result.points, 3U);
}

TEST_F(ObjOfOneMesh, BrokenIndicesCostNoMoreThanTheyMust)
{
    addTriangles({{scene::VERTEX, vertex, 0}, {scene::NORMAL, normals, 1}},
                 {0, 0, 1, 0, 3, 0,                         // no fourth position
                  0, 0, 1, 9, 2, 0,                         // no tenth normal
                  0, 0, 1, 0});                             // no third corner
    addTriangles({{scene::NORMAL, normals, 0}}, {0, 0, 0}); // no positions at all
    addTriangles({}, {0, 1, 2});
    node->addInstanceGeometry(makeInstance({}));
    node->addInstanceGeometry(
        boost::make_shared<scene::InstanceGeometry>(scene::IGeometryPtr(), scene::MaterialPtr()));
    EXPECT_THAT(written(), HasSubstr("\nf 1 2 3\n"));
    EXPECT_EQ(result.triangles, 1U);
    EXPECT_EQ(result.skippedFaces, 2U);
}

TEST_F(ObjOfOneMesh, WritesNumbersThatAnyViewerReads)
{
    positions->setData({std::numeric_limits<float>::quiet_NaN(), -0.0F, 1e-7F, 1, 0, 0, 0, 1, 0});
    addTriangles({{scene::VERTEX, vertex, 0}, {scene::NORMAL, normals, 0}}, {0, 1, 2});
    node->setScale(Eigen::Vector3f(0.0F, 1.0F, 1.0F)); // flat: no inverse, no normal
    normals->setData({1, 0, 0, 0, 1, 0, 0, 0, 0});
    node->addInstanceGeometry(makeInstance({}));
    const std::string text = written();
    EXPECT_THAT(text, HasSubstr("v 0 0 1e-07\n"));
    EXPECT_THAT(text, HasSubstr("vn 1 0 0\nvn 0 0 0\nvn 0 0 0\n"));
    EXPECT_THAT(text, Not(HasSubstr("nan")));
}

TEST_F(ObjOfOneMesh, SkinnedGeometryIsPosedWithItsNormals)
{
    // The first two points stay, the third one turns from y to z about the node's x axis: with
    // it its normal, which the others share. The node then moves all.
    addTriangles({{scene::VERTEX, vertex, 0}, {scene::NORMAL, normals, 1}}, {0, 0, 1, 0, 2, 0});
    const auto joint = boost::make_shared<scene::Node>(scene);
    joint->setID("joint");
    joint->rotate(Eigen::AngleAxisf(1.5707964F, Eigen::Vector3f::UnitX()).toRotationMatrix());
    scene->getRoot()->addNode(joint);
    const auto skin = boost::make_shared<scene::Skin>(mesh);
    const std::vector<float> identity = scene::rowByRow(Eigen::Matrix4f::Identity());
    std::vector<float> matrices = identity;
    matrices.insert(matrices.end(), identity.begin(), identity.end());
    scene::setStreams(skin, {scene::makeNames("names", {scene->getRoot()->getID(), "joint"}),
                             makeFloats("matrices", 16, matrices), makeFloats("weights", 1, {1})});
    skin->setVCount({1, 1, 1});
    skin->setV({0, 0, 0, 0, 1, 0});
    const auto controller = boost::make_shared<scene::Controller>("skin", "");
    controller->setSkin(skin);
    node->setTranslation(Eigen::Translation<float, 3>(0.0F, 0.0F, 5.0F));
    node->addInstanceController(
        boost::make_shared<scene::InstanceController>(makeInstance({}), controller));
    EXPECT_THAT(written(), ::testing::EndsWith("f 1//1 2//2 3//3\n"));
    const Points points = readPoints(path("mesh.obj"));
    ASSERT_EQ(points.cols(), 3);
    EXPECT_NEAR(points(2, 1), 5.0, 1e-6);
    EXPECT_NEAR(points(1, 2), 0.0, 1e-6);
    EXPECT_NEAR(points(2, 2), 6.0, 1e-6);
    const Points turned = readPoints(path("mesh.obj"), "vn ");
    ASSERT_EQ(turned.cols(), 3);
    EXPECT_TRUE(turned.col(0).isApprox(Eigen::Vector3d::UnitZ(), 1e-6));
    EXPECT_TRUE(turned.col(2).isApprox(-Eigen::Vector3d::UnitY(), 1e-6));
    EXPECT_EQ(result.unposedSkins, 0U);
}

TEST_F(ObjOfOneMesh, SkinsWithoutTheirJointsStandAsTheyWereBound)
{
    addTriangles({{scene::VERTEX, vertex, 0}}, {0, 1, 2});
    const auto skin = boost::make_shared<scene::Skin>(mesh);
    skin->setBindShapeMatrix(Eigen::Vector4f(10.0F, 10.0F, 10.0F, 1.0F).asDiagonal());
    const auto controller = boost::make_shared<scene::Controller>("skin", "");
    controller->setSkin(skin);
    node->setTranslation(Eigen::Translation<float, 3>(0.0F, 0.0F, 5.0F));
    const auto colour = boost::make_shared<scene::MaterialParameter>("diffuse", "color", "0 1 0 1");
    const auto green = boost::make_shared<scene::Material>("my green", "fx");
    green->addMaterialParameter(colour);
    node->addInstanceController(
        boost::make_shared<scene::InstanceController>(makeInstance(green), controller));
    EXPECT_THAT(written(), HasSubstr("v 0 0 5\nv 10 0 5\nv 0 10 5\n"
                                     "g my_node velmoran_material\nusemtl my_green\nf 1 2 3\n"));
    EXPECT_THAT(readFile("mesh.mtl"), HasSubstr("newmtl my_green\nKd 0 1 0\n"));
    EXPECT_EQ(result.unposedSkins, 1U);
}
} // namespace velmoran::examples::test
