#include "examples/scenetool/MorphCommand.h"
#include "examples/scenetool/SceneFacts.h"
#include "tests/examples/ToolFiles.h"

#include <cmath>

namespace velmoran::examples::test
{
namespace
{
namespace fs = std::filesystem;

/// A skin of the quad: the first corner goes with "hip", the third with "hand", the second
/// with half of each, the fourth with nothing. The joints are bound at x = 0 and x = 2.
std::string skin(const std::string& id, const std::string& hand)
{
    return "<controller id=\"" + id + "\"><skin source=\"#quad\"><source id=\"" + id +
           "-j\"><Name_array>hip " + hand + "</Name_array></source>" +
           source(id + "-m", 2, 16,
                  "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 1 0 0 -2 0 1 0 0 0 0 1 0 0 0 0 1") +
           source(id + "-w", 2, 1, "1 0.5") + "<joints><input semantic=\"JOINT\" source=\"#" + id +
           "-j\"/><input semantic=\"INV_BIND_MATRIX\" source=\"#" + id +
           "-m\"/></joints><vertex_weights count=\"4\"><input semantic=\"JOINT\" source=\"#" + id +
           "-j\" offset=\"0\"/><input semantic=\"WEIGHT\" source=\"#" + id +
           "-w\" offset=\"1\"/><vcount>1 2 1 0</vcount><v>0 0 0 1 1 1 1 0</v></vertex_weights>"
           "</skin></controller>";
}

std::string withSkin(const std::string& id)
{
    return "<instance_controller url=\"#" + id +
           "\"><skeleton>#bones</skeleton></instance_controller>";
}

/// The hand moves from x = 2 to x = 6 in a second.
const std::string ANIMATION =
    "<library_animations><animation>" + source("in", 2, 1, "0 1", {"TIME"}) +
    source("out", 2, 1, "2 6") +
    "<sampler id=\"s\"><input semantic=\"INPUT\" source=\"#in\"/><input semantic=\"OUTPUT\" "
    "source=\"#out\"/></sampler><channel source=\"#s\" target=\"bone2/t.X\"/></animation>"
    "</library_animations>";

/// The node "body" with the skin "arm" 5 along z, and the skeleton, whose joints have other IDs
/// than the skin names.
std::string arm(const std::string& controllers, const std::string& nodes)
{
    return quad(triangleList("0 1 2")) + "<library_controllers>" + controllers +
           "</library_controllers>" +
           visualScene("<node id=\"body\"><translate>0 0 5</translate>" + withSkin("arm") +
                       "</node>" + nodes +
                       "<node id=\"bones\" sid=\"hip\" type=\"JOINT\"><node id=\"bone2\" "
                       "sid=\"hand\" type=\"JOINT\"><translate sid=\"t\">2 0 0</translate>"
                       "</node></node>");
}

class SkinTool : public ToolFolder
{
protected:
    SkinTool() { moving = write("moving.dae", ANIMATION + arm(skin("arm", "hand"), "")); }

    std::string moving;
    const std::string avatar = exampleDocument("avatar.dae");
    const std::string tall = exampleDocument("avatar_tall.dae");
};

double largestDistance(const Points& a, const Points& b)
{
    return a.cols() == b.cols() && a.cols() > 0 ? (a - b).colwise().norm().maxCoeff() : INFINITY;
}
} // namespace

TEST_F(SkinTool, SkinTellsOfTheVerticesAtRestAndAtATime)
{
    const json rest = runJson({"skin", moving})["skinned"][0];
    expectHolds(rest, R"({"controller": "arm", "node": "body", "skeletons": ["bones"],
        "joints_resolved": 2, "joint_count": 2, "joint_nodes": ["bones", "bone2"],
        "node_world_is_identity": false})");
    EXPECT_EQ(rest["node_world"][2], json::parse("[0.0, 0.0, 1.0, 5.0]"));
    // The last corner has no influences: zeros, where it was bound to (0, 1, 5).
    EXPECT_EQ(rest["rest"]["with_node_world"], json::parse(R"({"count": 4,
        "min": [0.0, 0.0, 0.0], "max": [1.0, 1.0, 5.0], "mean": [0.5, 0.25, 3.75],
        "largest_displacement": 5.0990195135927845,
        "vertices": [[0.0, 0.0, 5.0], [1.0, 0.0, 5.0], [1.0, 1.0, 5.0], [0.0, 0.0, 0.0]]})"));

    const json late = runJson({"skin", moving, "--time", "1"});
    const json& pose = late["skinned"][0]["animated"][0];
    EXPECT_EQ(pose["time"], 1.0);
    EXPECT_EQ(pose["with_node_world"]["vertices"],
              json::parse("[[0.0, 0.0, 5.0], [3.0, 0.0, 5.0], [5.0, 1.0, 5.0], [0.0, 0.0, 0.0]]"));

    const Outcome text = run({"skin", moving, "--time", "0.5"});
    EXPECT_THAT(text.out, HasSubstr("moving.dae, 0.5 s\n"
                                    "  node \"body\", skin \"arm\": 4 vertices, 2 joints\n"
                                    "    from (0, 0, 0) to (3, 1, 5), mean (1.25, 0.25, 3.75)\n"));
    EXPECT_THAT(text.out, HasSubstr(", of vertex 3\n         0  (0, 0, 5)\n"
                                    "         1  (2, 0, 5)\n"));
}

TEST_F(SkinTool, SkinWritesWhatItTells)
{
    const std::string png = path("out.png");
    const Outcome outcome =
        run({"skin", moving, "--time", "1", "--obj", path("out.obj"), "--png", png});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(readFile("out.obj"), HasSubstr("v 0 0 5\nv 3 0 5\nv 5 1 5\nv 0 0 0\n"));
    EXPECT_EQ(readFile("out.png").substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_THAT(outcome.out, HasSubstr("Wrote " + png + ": 1 scene, "));
}

TEST_F(SkinTool, SkinShowsAllSkinsAndWarnsOfMissingJoints)
{
    const std::string two =
        write("two.dae", arm(skin("arm", "hand") + skin("hook", "gone"),
                             "<node id=\"other\">" + withSkin("hook") + "</node>"));
    const Outcome outcome = run({"skin", two, "--json"});
    const json skins = json::parse(outcome.out)["skinned"];
    ASSERT_EQ(skins.size(), 2U);
    EXPECT_EQ(skins[1]["controller"], "hook");
    EXPECT_EQ(skins[1]["joint_nodes"], json::parse(R"(["bones", null])"));
    // Half of the second corner stays with the hip, the third one is lost.
    EXPECT_EQ(skins[1]["rest"]["with_node_world"]["vertices"],
              json::parse("[[0.0, 0.0, 0.0], [0.5, 0.0, 0.0], [0.0, 0.0, 0.0], [0.0, 0.0, 0.0]]"));
    EXPECT_THAT(outcome.err, HasSubstr("1 of 2 joints of the skin \"hook\" are not in the scene"));
}

TEST_F(SkinTool, MorphsBetweenTheAvatarsOfTheRepository)
{
    const std::string png = path("morph.png");
    const std::string short1 = path("short.obj");
    const std::string tall1 = path("tall.obj");
    run({"skin", avatar, "--obj", short1});
    run({"skin", tall, "--obj", tall1});
    const Outcome outcome = run({"morph", avatar, tall, "--ratio", "1", "--steps", "3", "--obj",
                                 path("morph.obj"), "--png", png});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.err, IsEmpty());
    EXPECT_THAT(outcome.out, HasSubstr("avatar_tall.dae: 2786 vertices, 23 joints\n"));
    EXPECT_THAT(outcome.out, HasSubstr("  ratio 1       largest displacement of a vertex 0, of a "
                                       "joint 0\n"));
    EXPECT_THAT(outcome.out, HasSubstr("Wrote " + png + ": 3 scenes, "));
    const Points own = readPoints(short1);
    const Points others = readPoints(tall1);
    ASSERT_EQ(own.cols(), others.cols());
    constexpr double TOLERANCE = 2e-5; // of a person, in metres
    EXPECT_LT(largestDistance(readPoints(path("morph-1.obj")), others), TOLERANCE);
    EXPECT_LT(largestDistance(readPoints(path("morph-2.obj")), (own + others) / 2.0), TOLERANCE);
    EXPECT_LT(largestDistance(readPoints(path("morph-3.obj")), own), TOLERANCE);
    EXPECT_GT(largestDistance(own, others), 0.05);
    EXPECT_EQ(readFile("morph.png").substr(0, 8), "\x89PNG\r\n\x1a\n");
}

TEST_F(SkinTool, MorphNumbersItsFilesInOrder)
{
    MorphOptions options;
    options.objFile = "some.where/model.v2.obj";
    options.ratio = 0.9;
    EXPECT_THAT(getObjFiles(options), ElementsAre("some.where/model.v2.obj"));
    EXPECT_THAT(getMorphRatios(options), ElementsAre(0.9));
    options.steps = 10;
    EXPECT_EQ(getObjFiles(options).front(), "some.where/model.v2-01.obj");
    EXPECT_EQ(getObjFiles(options).back(), "some.where/model.v2-10.obj");
    EXPECT_EQ(getMorphRatios(options).front(), 0.0);
    EXPECT_EQ(getMorphRatios(options).back(), 0.9);
    options.objFile = "model";
    EXPECT_EQ(getObjFiles(options)[1], "model-02");
    options.objFile.clear();
    EXPECT_THAT(getObjFiles(options), IsEmpty());
}

TEST_F(SkinTool, MorphTellsWhatDoesNotBlend)
{
    const std::string other =
        writeChanged("other.dae", avatar, {{"id=\"r_toes\"", "id=\"r_foot\""}});
    const Outcome joints = run({"morph", avatar, other, "--ratio", "0.5"});
    EXPECT_EQ(joints.status, 0);
    EXPECT_THAT(joints.err, HasSubstr("1 of 23 joints of " + avatar + " are not in " + other +
                                      " (\"r_toes\"); the joints stay where they are\n"));
    const std::string small = writeChanged("small.dae", moving,
                                           {{"\"quad\"", "\"human-template-lib\""},
                                            {"#quad", "#human-template-lib"},
                                            {"\"body\"", "\"human-template\""}});
    const Outcome vertices = run({"morph", small, avatar, "--ratio", "0.5"});
    EXPECT_EQ(vertices.status, 0) << vertices.err;
    EXPECT_THAT(vertices.err, HasSubstr("has 4 vertices, "));
    EXPECT_THAT(vertices.err, HasSubstr("; the vertices are not blended\n"));
}

TEST_F(SkinTool, WrongUseAndDocumentsThatDoNotFitAreRefused)
{
    const std::string still = write("still.dae", arm(skin("arm", "hand"), ""));
    const std::string bare = write("bare.dae", visualScene("<node id=\"human-template\"/>"));
    const std::string unused =
        write("unused.dae", quad(triangleList("")) + "<library_controllers>" + skin("arm", "hand") +
                                "</library_controllers>" + visualScene("<node/>"));
    const std::string& file = moving;
    const std::string input = path("series-2.obj");
    fs::copy_file(avatar, input);
    expectRefused({
        {{"skin"}, 2, "FILE is required"},
        {{"skin", file, "--time", "-1"}, 2, "--time"},
        {{"skin", file, "--json", "--obj", "out.obj"}, 2, "excludes"},
        {{"skin", file, "--json", "--png", "out.png"}, 2, "excludes"},
        {{"skin", file, "--png", file}, 2, "--png: would write over"},
        {{"skin", bare}, 1, "bare.dae holds no controller\n"},
        {{"skin", unused}, 1, "no node in the scene of"},
        {{"skin", still, "--time", "0"}, 1, "still.dae holds no animation\n"},
        {{"skin", file, "--time", "1.1"}, 1, "--time 1.1: the animation ends at 1 s\n"},
        {{"morph", avatar}, 2, "TARGET is required"},
        {{"morph", avatar, avatar}, 2, "--ratio is required"},
        {{"morph", avatar, avatar, "--ratio", "1.01"}, 2, "\"1.01\" is no number from 0 to 1"},
        {{"morph", avatar, avatar, "--ratio", "-0.01"}, 2, "is no number from 0 to 1"},
        {{"morph", avatar, avatar, "--ratio", "nan"}, 2, "is no number from 0 to 1"},
        {{"morph", avatar, avatar, "--ratio", "1", "--steps", "0"}, 2, "--steps"},
        {{"morph", input, avatar, "--ratio", "1", "--steps", "3", "--obj", path("series.obj")},
         2,
         "--obj: would write over"},
        {{"morph", avatar, bare, "--ratio", "1"},
         1,
         "error: Invalid morph targets. Missing avatar controller.\n"},
        {{"morph", file, avatar, "--ratio", "0"},
         1,
         "error: Invalid morph targets. Missing avatar controller.\n"},
    });
    const Outcome late =
        run({"morph", avatar, avatar, "--ratio", "1", "--obj", path("missing/out.obj")});
    EXPECT_EQ(late.status, 1);
    EXPECT_THAT(late.out, Not(HasSubstr("Wrote")));
    EXPECT_THAT(late.err, HasSubstr("can't write"));
}
} // namespace velmoran::examples::test
