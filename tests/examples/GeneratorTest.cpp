#include "examples/generator/Body.h"
#include "examples/generator/Document.h"
#include "examples/generator/ExampleDocuments.h"
#include "examples/generator/Shapes.h"
#include "scene/graph/ITransformation.h"
#include "tests/examples/ToolFiles.h"

#include <locale>
#include <numeric>
#include <set>

namespace velmoran::generator
{
namespace
{
using examples::test::exampleDocument;
using ::testing::ElementsAre;

/// A document of the repository, which is read without a warning.
scene::SceneManagerPtr readExample(const std::string& fileName)
{
    const auto scene = boost::make_shared<scene::SceneManager>(core::event::EventManagerPtr());
    const auto read = examples::ColladaReader().readFile(exampleDocument(fileName), scene);
    EXPECT_TRUE(read.ok) << read.error;
    EXPECT_TRUE(read.warnings.empty());
    return scene;
}

/// Each edge belongs to two triangles, which run through it in opposite directions.
bool isClosed(const Surface& surface)
{
    std::set<std::pair<int, int>> edges;
    std::set<std::pair<int, int>> reversed;
    for (const Corners& t : surface.triangles)
    {
        for (std::size_t i = 0; i < 3; ++i)
        {
            edges.emplace(t[i], t[(i + 1) % 3]);
            reversed.emplace(t[(i + 1) % 3], t[i]);
        }
    }
    return edges.size() == 3 * surface.triangles.size() && edges == reversed;
}

/// Triangles whose front does not look where the normals of their corners point.
int countFolded(const Body& body)
{
    int folded = 0;
    const auto at = [](const std::vector<Vec3>& list, int i) { return list[std::size_t(i)]; };
    for (const Corners& t : body.surface.triangles)
    {
        const Vec3 a = at(body.surface.points, t[0]);
        const Vec3 front =
            cross(at(body.surface.points, t[1]) - a, at(body.surface.points, t[2]) - a);
        const Vec3 normal =
            at(body.normals, t[0]) + at(body.normals, t[1]) + at(body.normals, t[2]);
        folded += dot(front, normal) > 0.0 ? 0 : 1;
    }
    return folded;
}

/// The bodies at the density of the committed documents.
const std::vector<Body>& usualBodies()
{
    static const std::vector<Body> bodies = makeBodies(1.0);
    return bodies;
}

class CommaForPoint : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};
} // namespace

TEST(Generator, CommittedDocumentsAreWhatItWritesInAnyLocale)
{
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new CommaForPoint));
    const std::vector<ExampleDocument> documents = makeExampleDocuments(1.0);
    std::locale::global(before);

    ASSERT_EQ(documents.size(), 4U);
    for (const ExampleDocument& document : documents)
    {
        // Not EXPECT_EQ, which would print half a megabyte.
        EXPECT_TRUE(document.text == examples::test::readFile(exampleDocument(document.fileName)))
            << document.fileName << " is not up to date; see examples/data/README.md";
        EXPECT_LT(document.text.size(), 600000U) << document.fileName;
    }
}

TEST(Generator, NumbersAreRoundedAndShort)
{
    EXPECT_EQ(numberText(0.123456), "0.12346");
    EXPECT_EQ(numberText(-2.50), "-2.5");
    EXPECT_EQ(numberText(-0.000001), "0");
    EXPECT_EQ(numberText(100.0), "100");
}

TEST(Generator, BodiesAreClosedSmoothlyWeightedAndShareTheirTopology)
{
    const std::vector<Body>& bodies = usualBodies();
    ASSERT_GE(bodies.size(), 2U);
    for (const Body& body : bodies)
    {
        EXPECT_TRUE(isClosed(body.surface));
        EXPECT_EQ(countFolded(body), 0);
        EXPECT_EQ(body.surface.triangles, bodies[0].surface.triangles);
        EXPECT_EQ(body.surface.points.size(), bodies[0].surface.points.size());
        EXPECT_EQ(body.skeleton.size(), bodies[0].skeleton.size());
    }
    EXPECT_GE(bodies[0].surface.points.size(), 1000U);
    EXPECT_LE(bodies[0].surface.points.size(), 5000U);

    std::size_t blended = 0;
    for (const std::vector<Influence>& influences : bodies[0].influences)
    {
        ASSERT_GE(influences.size(), 1U);
        ASSERT_LE(influences.size(), 4U);
        const int sum =
            std::accumulate(influences.begin(), influences.end(), 0,
                            [](int total, const Influence& i) { return total + i.weight; });
        ASSERT_EQ(sum, 10000);
        blended += influences.size() > 1 ? 1U : 0U;
    }
    EXPECT_GT(blended, bodies[0].influences.size() / 3);
}

TEST(Generator, DetailScalesTheNumberOfPoints)
{
    const std::size_t coarse = makeBodies(0.5).front().surface.points.size();
    const std::size_t fine = usualBodies().front().surface.points.size();
    EXPECT_NEAR(static_cast<double>(fine) / static_cast<double>(coarse), 4.0, 0.5);
}

// Signed volumes add up only if all faces look outwards and none is missing: to a little
// less than that of the round shape, pi / 3 * (1 + 0.9 + 0.81) for a frustum.
TEST(Generator, ShapesEncloseTheirVolumeAndTheirNormalsLookOutwards)
{
    struct Row
    {
        const char* name;
        Shape shape;
        double volume;
    };
    const std::vector<Row> rows = {
        {"box", makeBox(), 1.0},
        {"sphere", makeSphere(24), 4.1888},
        {"frustum", makeFrustum(1.0, 0.9, 24), 2.8379},
        {"shade", makeFrustum(1.0, 0.6, 24), 2.0525},
        {"column", stretched(makeFrustum(1.0, 1.0, 24), {2.0, 0.5, 1.0}), 3.1416},
        {"square", makeSquare(), 0.0}};
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.name);
        const auto at = [&](const ShapeCorner& corner)
        { return row.shape.positions.at(std::size_t(corner.position)); };
        double sixfold = 0.0;
        for (const ShapeFace& face : row.shape.faces)
        {
            ASSERT_GE(face.size(), 3U);
            const Vec3 front = cross(at(face[1]) - at(face[0]), at(face[2]) - at(face[0]));
            for (std::size_t i = 0; i < face.size(); ++i)
            {
                const Vec3& normal = row.shape.normals.at(std::size_t(face[i].normal));
                EXPECT_NEAR(length(normal), 1.0, 1e-9);
                EXPECT_GT(dot(front, normal), 0.0);
                EXPECT_LT(std::size_t(face[i].texture), row.shape.textures.size());
                sixfold += i < 2 ? 0.0 : dot(at(face[0]), cross(at(face[i - 1]), at(face[i])));
            }
        }
        EXPECT_LE(sixfold / 6.0, row.volume);
        EXPECT_GE(sixfold / 6.0, 0.96 * row.volume);
    }
}

TEST(Generator, RoomHoldsWhatItPromises)
{
    const scene::SceneManagerPtr scene = readExample("room.dae");
    const scene::NodePtr bulb = scene->getNodeByID("lamp-bulb");
    ASSERT_TRUE(bulb);
    EXPECT_EQ(bulb->getParent()->getID(), "lamp");
    EXPECT_EQ(bulb->getInstanceLightCount(), 1U);
    EXPECT_EQ(scene->getNodeByID("room-view")->getInstanceCameraCount(), 1U);
    EXPECT_TRUE(scene->getNodeByID("ball")->inLayer("toys"));
    std::vector<std::string> sids;
    for (const auto& transformation : scene->getNodeByID("chair")->getOriginalTransformations())
    {
        sids.push_back(transformation->getSid());
    }
    EXPECT_THAT(sids, ElementsAre("translate", "rotateZ", "rotateY", "rotateX", "scale"));
}

// At rest each joint's world matrix undoes its inverse bind matrix, so that the skin
// leaves the body as it is.
TEST(Generator, AvatarsAreBoundToTheirSkeletonsAtRest)
{
    for (const char* fileName : {"avatar.dae", "avatar_tall.dae"})
    {
        SCOPED_TRACE(fileName);
        readExample(fileName);
        const std::string file = exampleDocument(fileName);
        const auto facts = examples::test::runJson({"info", file});
        const auto skins = examples::test::runJson({"skin", file})["skinned"];
        ASSERT_EQ(skins.size(), 1U);
        examples::test::expectHolds(skins[0],
                                    R"({"node": "human-template", "skeletons": ["sacrum"]})");
        EXPECT_LT(skins[0]["rest"]["with_node_world"]["largest_displacement"].get<double>(), 1e-5);
        const auto& skin = facts["controllers"][0];
        EXPECT_EQ(skin["source"], "human-template-lib");
        EXPECT_EQ(skin["joints"][0], "sacrum");
        EXPECT_GE(skin["joint_count"].get<int>(), 15);
        // Nodes have the names of joints both as their IDs and as their SIDs.
        EXPECT_EQ(skins[0]["joint_nodes"], skin["joints"]);
        EXPECT_EQ(facts["counts"]["joint_nodes_expanded"], skin["joint_count"]);
        std::size_t named = 0;
        for (const auto& node : facts["node_tree"])
        {
            named += node["type"] == "JOINT" && node["sid"] == node["id"] ? 1U : 0U;
        }
        EXPECT_EQ(skin["joint_count"], named);
    }
}
} // namespace velmoran::generator
