#include "examples/scenetool/SceneFacts.h"
#include "tests/examples/ToolFiles.h"

namespace velmoran::examples::test
{
namespace
{
using ::testing::EndsWith;

std::string animation(const std::string& id, const std::string& target, const std::string& times,
                      int stride, const std::string& values)
{
    return "<animation id=\"" + id + "\">" + source(id + "-in", 2, 1, times, {"TIME"}) +
           source(id + "-out", 2, stride, values) + "<source id=\"" + id +
           "-way\"><Name_array>LINEAR LINEAR</Name_array></source><sampler id=\"" + id +
           "-s\"><input semantic=\"INPUT\" source=\"#" + id +
           "-in\"/><input semantic=\"OUTPUT\" source=\"#" + id +
           "-out\"/><input semantic=\"INTERPOLATION\" source=\"#" + id +
           "-way\"/></sampler><channel source=\"#" + id + "-s\" target=\"" + target +
           "\"/></animation>";
}

/// A matrix that moves along x.
std::string moveX(const std::string& distance)
{
    return "1 0 0 " + distance + " 0 1 0 0 0 0 1 0 0 0 0 1 ";
}

/// A folder of its own with a document in which an arm moves from x = 0 to 4 in a second
/// and the hand below it from 0 to 2 in the first half of that; "still.dae" is without
/// animations.
class AnimationTool : public ToolFolder
{
protected:
    AnimationTool()
    {
        const std::string scene =
            quad(triangleList("0 1 2")) +
            "<library_cameras><camera id=\"cam\"><optics><technique_common><perspective>"
            "<yfov>40</yfov></perspective></technique_common></optics></camera></library_cameras>" +
            visualScene("<node id=\"arm\"><matrix sid=\"m\">" + moveX("1") +
                        "</matrix><node id=\"hand\"><translate sid=\"t\">0 3 0</translate>"
                        "<instance_geometry url=\"#quad\"/></node></node>"
                        "<node id=\"eye\"><instance_camera url=\"#cam\"/></node>");
        moving =
            write("moving.dae", "<library_animations>" +
                                    animation("arms", "arm/m", "0 1", 16, moveX("0") + moveX("4")) +
                                    "<animation id=\"more\">" +
                                    animation("hands", "hand/t.X", "0 0.5", 1, "0 2") +
                                    "<animation/></animation></library_animations>" + scene);
        still = write("still.dae", scene);
    }

    /// The x of the world positions of the nodes shown, time by time.
    std::vector<double> playX(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {"play", moving});
        const json facts = runJson(arguments);
        std::vector<double> values;
        for (const json& sample : facts["world_matrices"])
        {
            for (const json& node : sample["nodes"])
            {
                values.push_back(node["world"][0][3]);
            }
        }
        return values;
    }

    std::string moving;
    std::string still;
};
} // namespace

TEST_F(AnimationTool, InfoTellsTheFactsOfTheAnimations)
{
    const json facts = runJson({"info", moving})["animation"];
    expectHolds(facts, R"({"channel_count": 2, "channels_resolved_to_transformations": 2,
        "first_key_time": 0.0, "duration_last_key_time": 1.0, "key_count_total": 4,
        "interpolations": ["LINEAR"]})");
    EXPECT_EQ(facts["channels"][1], json::parse(R"({"target": "hand/t.X", "sampler": "hands-s",
        "resolves_to": "translate", "keys": 2, "first_time": 0.0, "last_time": 0.5,
        "output_stride": 1, "first_value": [0.0], "last_value": [2.0]})"));
    EXPECT_THAT(run({"info", moving}).out,
                HasSubstr("Animation  2 channels, 4 keys from 0 to 1 s\n"));
    EXPECT_THAT(run({"info", still}).out, Not(HasSubstr("Animation  ")));
    EXPECT_FALSE(runJson({"info", still}).contains("animation"));
}

TEST_F(AnimationTool, PlayShowsAllAnimationsTimeByTimeUpToTheLastKeys)
{
    // The hand's channel ends at 0.5 s, where it is 2 further than the arm.
    EXPECT_THAT(playX({}), ElementsAre(0, 0, 1, 2, 2, 4, 3, 5, 4, 6));
    EXPECT_THAT(playX({"--node", "hand", "--step", "0.5"}), ElementsAre(0, 4, 6));
    EXPECT_THAT(playX({"--node", "hand", "--node", "arm", "--from", "0.25", "--to", "0.25"}),
                ElementsAre(2, 1));
    EXPECT_THAT(playX({"--node", "hand", "--from", "0.75", "--to", "0.75"}), ElementsAre(3))
        << "nothing was shown before: the hand is where the document has it";
    const Outcome late = run({"play", moving, "--from", "0.5", "--to", "2", "--step", "1"});
    EXPECT_THAT(late.err, HasSubstr("--to 2: the animation ends at 1 s\n"));
    EXPECT_THAT(late.out, HasSubstr("\n0.5 s\n  arm\n"
                                    "           1         0         0         2\n"));
}

TEST_F(AnimationTool, LivePlayCountsTheEventsOfTheWorkerAndShowsABar)
{
    const Outcome outcome = run({"play", moving, "--live", "0.3", "--json"}, true);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const json facts = json::parse(outcome.out);
    EXPECT_GE(facts["live_seconds"], 0.3);
    // Two nodes, each with a matrix and a scale.
    EXPECT_GE(facts.at("/events/NodeTransformationUpdate/count"_json_pointer), 4);
    EXPECT_GE(facts.at("/events/SyncScene/count"_json_pointer), 1);
    EXPECT_GT(facts["events_per_second"], 0.0);
    EXPECT_THAT(outcome.err, HasSubstr("moving.dae  [----------"));
    EXPECT_THAT(outcome.err, HasSubstr(" of 0.3 s"));
    EXPECT_THAT(outcome.err, EndsWith("\r\033[K"));
}

TEST_F(AnimationTool, KeyedPosesAreShownAndPlayBack)
{
    const std::string obj = path("posed.obj");
    const Outcome outcome =
        run({"key",      moving,      "--time", "0.5", "--node", "hand", "--rotate", "0,0,2,90",
             "--rotate", "1,0,0,360", "--time", "0",   "--time", "1",    "--node",   "arm",
             "--rotate", "0,0,1,-90", "--obj",  obj,   "--live", "0.1"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("  nodes        2  arm, hand\n"
                                       "  key times    3  0, 0.5, 1 s\n"
                                       "  duration        1 s\n"));
    // Halfway the arm is at 2 and the hand 2 further on, turned to the left.
    EXPECT_THAT(outcome.out, HasSubstr("0.5 s\n  hand\n"
                                       "           0        -1         0         4\n"
                                       "           1         0         0         3\n"));
    const std::string words = "at the key times differ by at most ";
    const std::size_t at = outcome.out.find(words);
    ASSERT_NE(at, std::string::npos);
    EXPECT_LT(std::stof(outcome.out.substr(at + words.size())), 1e-5F);
    EXPECT_THAT(outcome.out, HasSubstr("NodeTransformationUpdate"));
    // At 1 s the arm is at 4 and turned to the right, with it the hand, which stands at
    // (0, 3) of the arm as in the document: its own keys end earlier.
    const Points points = readPoints(obj);
    Eigen::Matrix3d corners;
    corners << 7, 7, 8, 0, -1, -1, 0, 0, 0;
    ASSERT_GE(points.cols(), 3);
    EXPECT_LT((points.leftCols<3>() - corners).norm(), 1e-5) << points.leftCols<3>();
}

TEST_F(AnimationTool, WrongUseAndDocumentsThatDoNotFitAreRefused)
{
    const std::string& file = moving;
    expectRefused({
        {{"play", file, "--step", "0"}, 2, "--step"},
        {{"play", file, "--from", "-1"}, 2, "--from"},
        {{"play", file, "--to", "nan"}, 2, "--to"},
        {{"play", file, "--from", "1", "--to", "0.5"}, 2, "is behind --to"},
        {{"play", file, "--live", "inf"}, 2, "--live"},
        {{"play", file, "--live", "1", "--step", "1"}, 2, "excludes"},
        {{"play", still}, 1, "still.dae holds no animation"},
        {{"play", file, "--node", "foot"}, 1, "no node \"foot\""},
        {{"play", file, "--from", "1.1"}, 1, "the animation ends at 1 s"},
        {{"key", file}, 2, "--time is required"},
        {{"key", file, "--node", "arm", "--rotate", "1,0,0,9", "--time", "1"}, 2, "--node"},
        {{"key", file, "--time", "1", "--rotate", "1,0,0,9"}, 2, "--rotate"},
        {{"key", file, "--time", "1", "--node", "arm"}, 2, "no --rotate"},
        {{"key", file, "--time", "1", "--node", "arm", "--rotate", "1,0,0"}, 2, "DEGREES"},
        {{"key", file, "--time", "1", "--node", "arm", "--rotate", "1,0,0,9,"}, 2, "DEGREES"},
        {{"key", file, "--time", "1", "--node", "arm", "--rotate", "0,0,0,9"}, 2, "no axis"},
        {{"key", file, "--time", "1", "--time", "1.004"}, 2, "less than 0.01 s"},
        {{"key", file, "--time", "1", "--obj", file}, 2, "write over"},
        {{"key", file, "--time", "1", "--node", "foot", "--rotate", "1,0,0,9"}, 1, "\"foot\""},
        {{"key", file, "--time", "1", "--node", "vs", "--rotate", "1,0,0,9"}, 1, "can't be keyed"},
        {{"key", file, "--time", "1", "--node", "eye", "--rotate", "1,0,0,9"}, 1, "can't be keyed"},
    });
}
} // namespace velmoran::examples::test
