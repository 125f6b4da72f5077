#include "examples/scenetool/ObjWriter.h"
#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace velmoran::examples
{
namespace
{
using ::testing::HasSubstr;
using ::testing::Not;

std::string readFile(const std::string& path)
{
    std::ifstream in(path);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

scene::StreamPtr makeStream(const std::string& id, int stride, const std::vector<float>& data)
{
    const auto stream = boost::make_shared<scene::Stream>(id, stride, true);
    stream->setData(data);
    return stream;
}

// A mesh with the positions (0,0,0), (1,0,0), (0,1,0), the texture coordinates (0,0),
// (1,0), (0,1) and one normal along z.
class ObjOfOneMesh : public ::testing::Test
{
protected:
    ObjOfOneMesh()
        : scene(boost::make_shared<scene::SceneManager>(core::event::EventManagerPtr())),
          mesh(boost::make_shared<scene::Mesh>("mesh", "")),
          positions(makeStream("positions", 3, {0, 0, 0, 1, 0, 0, 0, 1, 0})),
          textures(makeStream("textures", 2, {0, 0, 1, 0, 0, 1})),
          normals(makeStream("normals", 3, {0, 0, 2})),
          node(boost::make_shared<scene::Node>(scene)),
          m_path(::testing::TempDir() + "obj_of_one_mesh.obj")
    {
        mesh->addVerticesMapping({scene::POSITION, positions, 0});
        node->setID("my node");
        scene->getRoot()->addNode(node);
    }

    ~ObjOfOneMesh() override
    {
        mesh->clearPrimitives();
        std::remove(m_path.c_str());
        std::remove(result.materialFile.c_str());
    }

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
        result = writeObj(scene, m_path);
        const std::string text = readFile(m_path);
        return text.substr(text.find("\nv ") + 1);
    }

    scene::SceneManagerPtr scene;
    scene::MeshPtr mesh;
    scene::StreamPtr positions;
    scene::StreamPtr textures;
    scene::StreamPtr normals;
    scene::NodePtr node;
    ObjResult result;

private:
    std::string m_path;
};
} // namespace

TEST_F(ObjOfOneMesh, ReadsInputsThatShareAnOffset)
{
    // Positions and texture coordinates go by the first index, the normal by the second.
    const auto vertex = makeStream("mesh_vertices", 3, {});
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
    const auto vertex = makeStream("mesh_vertices", 3, {});
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
    addTriangles(
        {{scene::VERTEX, makeStream("mesh_vertices", 3, {}), 0}, {scene::NORMAL, normals, 0}},
        {0, 1, 2});
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
    addTriangles(
        {{scene::VERTEX, makeStream("mesh_vertices", 3, {}), 0}, {scene::NORMAL, normals, 1}},
        {0, 0, 1, 0, 2, 0});
    const auto joint = boost::make_shared<scene::Node>(scene);
    joint->setID("joint");
    joint->rotate(Eigen::AngleAxisf(1.5707964F, Eigen::Vector3f::UnitX()).toRotationMatrix());
    scene->getRoot()->addNode(joint);
    const auto skin = boost::make_shared<scene::Skin>(mesh);
    const auto names = makeStream("names", 1, {});
    names->setNameList({scene->getRoot()->getID(), "joint"});
    const Eigen::Matrix4f identity = Eigen::Matrix4f::Identity();
    std::vector<float> matrices(identity.data(), identity.data() + 16);
    matrices.insert(matrices.end(), identity.data(), identity.data() + 16);
    skin->setStreams({names, makeStream("matrices", 16, matrices), makeStream("weights", 1, {1})});
    skin->setJointsInput("JOINT", "names");
    skin->setJointsInput("INV_BIND_MATRIX", "matrices");
    skin->setVertexWeightsInput("JOINT", "names");
    skin->setVertexWeightsInput("WEIGHT", "weights");
    skin->setVCount({1, 1, 1});
    skin->setV({0, 0, 0, 0, 1, 0});
    const auto controller = boost::make_shared<scene::Controller>("skin", "");
    controller->setSkin(skin);
    node->setTranslation(Eigen::Translation<float, 3>(0.0F, 0.0F, 5.0F));
    node->addInstanceController(
        boost::make_shared<scene::InstanceController>(makeInstance({}), controller));
    std::istringstream text(written());
    std::vector<std::string> words{std::istream_iterator<std::string>(text), {}};
    const auto number = [&words](std::size_t place) { return std::stof(words.at(place)); };
    // "v" and three numbers for each point, then the group, then the normals.
    EXPECT_NEAR(number(7), 5.0F, 1e-6F);
    EXPECT_NEAR(number(10), 0.0F, 1e-6F);
    EXPECT_NEAR(number(11), 6.0F, 1e-6F);
    const auto normalAt = [&](std::size_t place)
    { return Eigen::Vector3f(number(place + 1), number(place + 2), number(place + 3)); };
    const auto first =
        static_cast<std::size_t>(std::find(words.begin(), words.end(), "vn") - words.begin());
    EXPECT_TRUE(normalAt(first).isApprox(Eigen::Vector3f::UnitZ(), 1e-6F));
    EXPECT_TRUE(normalAt(first + 8).isApprox(-Eigen::Vector3f::UnitY(), 1e-6F));
    EXPECT_THAT(std::vector<std::string>(words.end() - 4, words.end()),
                ::testing::ElementsAre("f", "1//1", "2//2", "3//3"));
    EXPECT_EQ(result.unposedSkins, 0U);
}

TEST_F(ObjOfOneMesh, SkinsWithoutTheirJointsStandAsTheyWereBound)
{
    addTriangles({{scene::VERTEX, makeStream("mesh_vertices", 3, {}), 0}}, {0, 1, 2});
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
    EXPECT_THAT(readFile(result.materialFile), HasSubstr("newmtl my_green\nKd 0 1 0\n"));
    EXPECT_EQ(result.unposedSkins, 1U);
}
} // namespace velmoran::examples
