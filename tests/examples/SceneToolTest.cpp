#include "examples/scenetool/MergeReport.h"
#include "examples/scenetool/SceneFacts.h"
#include "examples/scenetool/Text.h"
#include "tests/examples/ToolFiles.h"

#include <sys/resource.h>

#include <csignal>

namespace velmoran::examples::test
{
namespace
{
namespace fs = std::filesystem;

// A triangle in the plane x + y = 1, its normal (1, 1, 0) in full length, below a node
// that doubles x, below a node moved by 10 along z.
const std::string TINY = R"(<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema"
 version="1.4.1"><asset><unit meter="0.01"/><up_axis>Z_UP</up_axis></asset>
<library_images><image id="img"><init_from>a.png</init_from></image></library_images>
<library_effects><effect id="fx"><profile_COMMON><technique sid="t"><lambert><diffuse>
 <color>1 0.5 0 1</color></diffuse></lambert></technique></profile_COMMON></effect>
</library_effects>
<library_materials><material id="orange"><instance_effect url="#fx"/></material>
</library_materials>
<library_cameras><camera id="cam"><optics><technique_common><perspective><yfov>40</yfov>
 </perspective></technique_common></optics></camera></library_cameras>
<library_geometries><geometry id="tri" name="Tri"><mesh>)" +
                         source("pos", 3, 3, "1 0 0 0 1 0 0 1 2", {"X", "Y", "Z"}) +
                         source("nrm", 1, 3, "1 1 0", {"X", "Y", "Z"}) + R"(
 <vertices id="vtx"><input semantic="POSITION" source="#pos"/></vertices>
 <triangles count="1" material="sym"><input semantic="VERTEX" source="#vtx" offset="0"/>
  <input semantic="NORMAL" source="#nrm" offset="1"/><p>0 0 1 0 2 0</p></triangles>
</mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="vs">
 <node id="outer" type="NODE" layer="front"><translate sid="move">0 0 10</translate>
  <node id="inner" sid="in" type="JOINT"><scale>2 1 1</scale>
   <instance_geometry url="#tri"><bind_material><technique_common>
    <instance_material symbol="sym" target="#orange"/></technique_common></bind_material>
   </instance_geometry></node></node>
 <node id="eye"><instance_camera url="#cam"/></node>
</visual_scene></library_visual_scenes>
<scene><instance_visual_scene url="#vs"/></scene></COLLADA>)";

/// The tiny document in a folder, as it is and mirrored.
class SceneTool : public ToolFolder
{
protected:
    SceneTool()
    {
        std::ofstream(path("tiny.dae")) << TINY;
        mirrored = writeChanged("mirrored.dae", tiny, {{"<scale>2", "<scale>-2"}});
    }

    std::vector<std::string> listFolder() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(path("")))
        {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    const std::string tiny = path("tiny.dae");
    std::string mirrored;
};

/// A stream that takes nothing, like a full disk.
class FullBuffer : public std::streambuf
{
};
} // namespace

TEST_F(SceneTool, AnswersWithTheExitStatusThatTheUsageTells)
{
    const std::string broken = path("broken.dae");
    std::ofstream(broken) << TINY.substr(0, 900);
    const std::string& file = tiny;
    for (const std::vector<std::string>& fine :
         {std::vector<std::string>{"--help"}, {"merge", "--help"}, {"info", file}})
    {
        const Outcome outcome = run(fine);
        EXPECT_EQ(outcome.status, 0) << fine[0];
        EXPECT_THAT(outcome.err, IsEmpty());
    }
    expectRefused({
        {{}, 2, "A subcommand is required"},
        {{"show", file}, 2, "A subcommand is required"},
        {{"merge", file}, 2, "FILE is required"},
        {{"merge", file, file, "--flags", "64"}, 2, "--flags: Value 64"},
        {{"merge", file, file, "--flags", "all"}, 2, "--flags: Value all"},
        {{"merge", file, file, "--obj", file}, 2, "would write over"},
        {{"info", path("missing.dae")}, 1, "can't be read"},
        {{"info", broken, "--json"}, 1, "not well-formed"},
        {{"merge", file, broken}, 1, "not well-formed"},
    });
}

TEST_F(SceneTool, FullStandardOutputIsAnError)
{
    FullBuffer full;
    std::ostream out(&full);
    std::ostringstream err;
    const char* const arguments[] = {"scenetool", "info", tiny.c_str()};
    EXPECT_EQ(runSceneTool(3, arguments, {out, err}), 1);
    EXPECT_THAT(err.str(), HasSubstr("can't write to standard output"));
}

TEST_F(SceneTool, InfoTellsTheFactsOfTheScene)
{
    const json facts = runJson({"info", tiny});
    // Arrays are compared as a whole. The default effect is not the document's.
    expectHolds(facts, R"({"up_axis": "Z_UP", "unit_meter": "0.01", "visual_scene": "vs",
        "counts": {"effects": 1, "nodes_expanded": 3, "joint_nodes_expanded": 1,
            "instance_camera_expanded": 1,
            "transformations_expanded": {"scale": 1, "translate": 1}},
        "ids": {"materials": ["orange"]},
        "geometries": [{"id": "tri", "name": "Tri", "kind": "mesh",
            "position_source": "pos", "position_count": 3,
            "position_min": [0.0, 0.0, 0.0], "position_max": [1.0, 1.0, 2.0],
            "position_sum": [1.0, 2.0, 2.0],
            "sources": [{"id": "pos", "stride": 3, "count": 3, "array_length": 9},
                        {"id": "nrm", "stride": 3, "count": 1, "array_length": 3}],
            "triangle_count": 1, "faces_by_kind": {"triangles": 1}}],
        "totals": {"positions": 3, "triangles": 1, "faces_by_kind": {"triangles": 1}}})");
    EXPECT_EQ(facts["counts"]["transformations_expanded"].size(), 2U);
    EXPECT_EQ(facts["node_tree"][0], json::parse(R"({"id": "outer", "name": null, "sid": null,
        "type": "NODE", "parent": null, "transformations": ["translate"]})"));
    EXPECT_EQ(facts["node_tree"][1], json::parse(R"({"id": "inner", "name": null, "sid": "in",
        "type": "JOINT", "parent": "outer", "transformations": ["scale"]})"));
    EXPECT_EQ(facts["rest_world_matrices"][1], json::parse(R"({"node": "inner",
        "world": [[2.0, 0.0, 0.0, 0.0], [0.0, 1.0, 0.0, 0.0], [0.0, 0.0, 1.0, 10.0],
                  [0.0, 0.0, 0.0, 1.0]]})"));
}

TEST_F(SceneTool, InfoForPeopleStaysShortHoweverDeepTheScene)
{
    std::string nodes;
    for (int i = 500; i > 0; --i)
    {
        nodes = "<node id=\"n" + std::to_string(i) + "\">" + nodes + "</node>";
    }
    const std::string eye = "<node id=\"eye\"";
    const std::string deep = writeChanged("deep.dae", tiny, {{eye, nodes + eye}});
    const Outcome outcome = run({"info", deep});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    for (const char* part :
         {"  scene \"vs\", Z_UP, a unit is 0.01 m\n", "  geometries       1  tri\n",
          "  lights           0\n", "  tri               3          1  (0, 0, 0)  (1, 1, 2)\n",
          "Nodes  503, 1 of them a joint\n",
          "    inner                         joint, geometry tri\n", "  ... and 463 more\n"})
    {
        EXPECT_THAT(outcome.out, HasSubstr(part));
    }
    EXPECT_EQ(run({"info", deep, "--json"}).status, 0);
}

TEST(MergeReportNames, AreSortedByWhatBecameOfThem)
{
    const Changes changes =
        classify("nodes", {"a", "b", "c__renamed__", "e"},
                 {"a", "b", "c__renamed__", "e", "new", "a__renamed__", "b__renamed_OID12__",
                  "c__renamed____renamed__", "x__renamed_OID__", "b__renamed_OID13__"},
                 {"new", "a", "b", "c__renamed__", "x__renamed_OID__", "b", "e"});
    EXPECT_THAT(changes.added, ElementsAre("new", "x__renamed_OID__"));
    EXPECT_THAT(changes.renamed,
                ElementsAre(Pair("a", "a__renamed__"), Pair("b", "b__renamed_OID12__"),
                            Pair("c__renamed__", "c__renamed____renamed__"),
                            Pair("b", "b__renamed_OID13__")));
    EXPECT_THAT(changes.discarded, ElementsAre("e"));
}

TEST_F(SceneTool, MergeReportsClashesAsTheFlagsResolveThem)
{
    const Outcome renaming = run({"merge", tiny, tiny});
    ASSERT_EQ(renaming.status, 0) << renaming.err;
    for (const char* line :
         {"geometries      1 renamed    tri -> tri__renamed__\n",
          "images          1 renamed    img -> img__renamed__\n",
          "effects         1 discarded  fx\n", "materials       1 discarded  orange\n",
          "nodes           4 renamed    vs -> vs__renamed_OID", "not merged  1 camera (",
          "4 SceneTopologyUpdate"})
    {
        EXPECT_THAT(renaming.out, HasSubstr(line));
    }
    const Outcome discarding = run({"merge", tiny, tiny, "--flags", "29"});
    EXPECT_THAT(discarding.out, HasSubstr("geometries      1 discarded  tri\n"));
    EXPECT_THAT(discarding.out, HasSubstr("nodes           4 discarded  vs, outer, inner, eye\n"));
    EXPECT_THAT(discarding.out, Not(HasSubstr("renamed")));
    EXPECT_THAT(discarding.out, Not(HasSubstr("hidden"))) << "built-in layers are no news";
}

TEST_F(SceneTool, MergeTellsOfNodesThatJoinedAndOfOtherUnits)
{
    const std::string other =
        writeChanged("other.dae", tiny, {{"Z_UP", "Y_UP"}, {"\"vs\"", "\"v2\""}, {"#vs", "#v2"}});
    // The root "v2" is new and comes first, so the nodes below it clash elsewhere.
    const Outcome renaming = run({"merge", tiny, other, other, "--flags", "32"});
    EXPECT_THAT(renaming.err, HasSubstr("Y_UP and 0.01 m a unit, the base Z_UP and 0.01 m"));
    EXPECT_THAT(renaming.out, HasSubstr("nodes           1 added      v2\n"));
    // The second time it joins the first one, but the nodes below had been renamed.
    EXPECT_THAT(renaming.out, HasSubstr("                1 joined     v2\n"));
}

TEST_F(SceneTool, MergesUnderTheParentAskedFor)
{
    const Outcome known = run({"merge", tiny, mirrored, "--parent", "eye"});
    EXPECT_THAT(known.out, HasSubstr("under \"eye\""));
    EXPECT_THAT(known.err, IsEmpty());
    const Outcome unknown = run({"merge", tiny, mirrored, "--parent", "nobody"});
    EXPECT_EQ(unknown.status, 0);
    EXPECT_THAT(unknown.out, HasSubstr("under \"vs\""));
    EXPECT_THAT(unknown.err, HasSubstr("no node \"nobody\""));
}

TEST_F(SceneTool, PrintsEveryEventOnALine)
{
    const Outcome outcome = run({"merge", tiny, tiny, "--flags", "48", "--events"});
    // The one node that clashes, the scene's root, is discarded with all below it.
    EXPECT_THAT(outcome.out, HasSubstr("SceneUpdate  MaterialList\nSceneUpdate\n"
                                       "SceneUpdate  MaterialList\nSyncScene\n"));
    EXPECT_THAT(outcome.out, HasSubstr("events      3 SceneUpdate, 1 SyncScene\n"));
}

TEST_F(SceneTool, WritesTheWorldSpaceResultAsObj)
{
    const std::string obj = path("out.obj");
    const Outcome outcome = run({"merge", tiny, mirrored, "--flags", "1", "--obj", obj});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    // Under a scale of (2, 1, 1) the normal (1, 1, 0) becomes (1/2, 1, 0) at unit length.
    EXPECT_THAT(readFile("out.obj"), HasSubstr("mtllib out.mtl\n"
                                               "v 2 0 10\nv 0 1 10\nv 0 1 12\n"
                                               "vn 0.4472136 0.8944272 0\n"
                                               "g inner sym\nusemtl orange\n"
                                               "f 1//1 2//1 3//1\n"
                                               "v -2 0 10\nv 0 1 10\nv 0 1 12\n"
                                               "vn -0.4472136 0.8944272 0\n"));
    // Mirrored faces are turned around to look where their normals point.
    EXPECT_THAT(readFile("out.obj"), HasSubstr("f 4//2 6//2 5//2\n"));
    EXPECT_THAT(readFile("out.mtl"), HasSubstr("newmtl orange\nKd 1 0.5 0\n"));
}

TEST_F(SceneTool, LeavesNothingBehindWhenTheOutputCannotBeWritten)
{
    fs::create_directory(path("folder.obj"));
    const std::vector<std::string> before = listFolder();
    for (const std::string& output :
         {path("missing/out.obj"), path("folder.obj"), std::string("/dev/full")})
    {
        SCOPED_TRACE(output);
        const Outcome outcome = run({"merge", tiny, tiny, "--obj", output});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr("can't write " + output + ": "));
        EXPECT_EQ(listFolder(), before);
    }
}

TEST_F(SceneTool, KeepsTheFormerResultWhenTheDiskIsFull)
{
    const std::string obj = path("out.obj");
    std::ofstream(obj) << "former";
    const std::vector<std::string> before = listFolder();
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit full{100, limit.rlim_max}; // bytes that a file may have
    const auto signal = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &full);
    const Outcome outcome = run({"merge", tiny, tiny, "--obj", obj});
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, signal);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("can't write " + obj));
    EXPECT_EQ(listFolder(), before);
    EXPECT_EQ(readFile("out.obj"), "former");
}

TEST(SceneToolText, LongListsOfNamesAreCut)
{
    const std::vector<std::string> names(50, "name");
    const std::string text = wrapNames(names, 90, 2);
    EXPECT_EQ(text, "name,\n" + std::string(90, ' ') + "name,\n" + std::string(90, ' ') +
                        "... and 48 more");
    EXPECT_EQ(wrapNames({"a", "b\n"}, 4, 1), "a, b?");
}
} // namespace velmoran::examples::test
