#include "examples/scenetool/MergeReport.h"
#include "examples/scenetool/SceneFacts.h"
#include "examples/scenetool/Text.h"
#include "tests/examples/ToolRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace velmoran::examples
{
namespace
{
namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Pair;

// A triangle in the plane x + y = 1, its normal (1, 1, 0) in full length, below a node
// that doubles x, below a node moved by 10 along z.
const char* const TINY = R"(<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema"
 version="1.4.1"><asset><unit meter="0.01"/><up_axis>Z_UP</up_axis></asset>
<library_images><image id="img"><init_from>a.png</init_from></image></library_images>
<library_effects><effect id="fx"><profile_COMMON><technique sid="t"><lambert><diffuse>
 <color>1 0.5 0 1</color></diffuse></lambert></technique></profile_COMMON></effect>
</library_effects>
<library_materials><material id="orange"><instance_effect url="#fx"/></material>
</library_materials>
<library_cameras><camera id="cam"><optics><technique_common><perspective><yfov>40</yfov>
 </perspective></technique_common></optics></camera></library_cameras>
<library_geometries><geometry id="tri" name="Tri"><mesh>
 <source id="pos"><float_array id="pos-a" count="9">1 0 0 0 1 0 0 1 2</float_array>
  <technique_common><accessor source="#pos-a" count="3" stride="3"><param name="X" type="float"/>
  <param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common>
 </source>
 <source id="nrm"><float_array id="nrm-a" count="3">1 1 0</float_array>
  <technique_common><accessor source="#nrm-a" count="1" stride="3"><param name="X" type="float"/>
  <param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common>
 </source>
 <vertices id="vtx"><input semantic="POSITION" source="#pos"/></vertices>
 <triangles count="1" material="sym"><input semantic="VERTEX" source="#vtx" offset="0"/>
  <input semantic="NORMAL" source="#nrm" offset="1"/><p>0 0 1 0 2 0</p></triangles>
</mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="vs">
 <node id="outer" type="NODE" layer="front"><translate sid="move">0 0 10</translate>
  <node id="inner" sid="in" type="JOINT"><scale>SCALE 1 1</scale>
   <instance_geometry url="#tri"><bind_material><technique_common>
    <instance_material symbol="sym" target="#orange"/></technique_common></bind_material>
   </instance_geometry></node></node>
 <node id="eye"><instance_camera url="#cam"/></node>
</visual_scene></library_visual_scenes>
<scene><instance_visual_scene url="#vs"/></scene></COLLADA>)";

using test::Outcome;
using test::run;

std::string readFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// A folder of its own with the tiny document in it, as it is and mirrored.
class SceneTool : public ::testing::Test
{
protected:
    SceneTool()
    {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
        tiny = write("tiny.dae", "2");
        mirrored = write("mirrored.dae", "-2");
    }

    ~SceneTool() override { fs::remove_all(m_folder); }

    std::string write(const char* name, const std::string& scale) const
    {
        std::string text = TINY;
        text.replace(text.find("SCALE"), 5, scale);
        std::ofstream(path(name)) << text;
        return path(name);
    }

    std::string path(const char* name) const { return (m_folder / name).string(); }

    std::vector<std::string> listFolder() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_folder))
        {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    std::string tiny;
    std::string mirrored;

private:
    fs::path m_folder =
        fs::path(::testing::TempDir()) /
        ("scenetool_" +
         std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
};

/// A stream that takes nothing, like a full disk.
class FullBuffer : public std::streambuf
{
};
} // namespace

TEST_F(SceneTool, AnswersWithTheExitStatusThatTheUsageTells)
{
    std::ofstream(path("broken.dae")) << std::string(TINY).substr(0, 900);
    const std::string missing = path("missing.dae");
    const std::string broken = path("broken.dae");
    struct Row
    {
        const char* name;
        std::vector<const char*> arguments;
        int status;
    };
    const std::vector<Row> rows = {
        {"help", {"--help"}, 0},
        {"help of a command", {"merge", "--help"}, 0},
        {"info", {"info", tiny.c_str()}, 0},
        {"no command", {}, 2},
        {"unknown command", {"show", tiny.c_str()}, 2},
        {"nothing to merge", {"merge", tiny.c_str()}, 2},
        {"flags that do not exist", {"merge", tiny.c_str(), tiny.c_str(), "--flags", "64"}, 2},
        {"flags that are no number", {"merge", tiny.c_str(), tiny.c_str(), "--flags", "all"}, 2},
        {"output over an input", {"merge", tiny.c_str(), tiny.c_str(), "--obj", tiny.c_str()}, 2},
        {"missing document", {"info", missing.c_str()}, 1},
        {"broken document", {"info", broken.c_str(), "--json"}, 1},
        {"broken document to merge", {"merge", tiny.c_str(), broken.c_str()}, 1},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.name);
        const Outcome outcome = run(row.arguments);
        EXPECT_EQ(outcome.status, row.status);
        EXPECT_EQ(outcome.err.empty(), row.status == 0) << outcome.err;
        if (row.status == 1)
        {
            EXPECT_THAT(outcome.out, IsEmpty());
            EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
        }
    }
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
    const Outcome outcome = run({"info", tiny.c_str(), "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Json facts = Json::parse(outcome.out);
    EXPECT_EQ(facts["up_axis"], "Z_UP");
    EXPECT_EQ(facts["unit_meter"], "0.01");
    EXPECT_EQ(facts["visual_scene"], "vs");
    EXPECT_EQ(facts["counts"]["effects"], 1) << "the default effect is not the document's";
    EXPECT_EQ(facts["counts"]["nodes_expanded"], 3);
    EXPECT_EQ(facts["counts"]["joint_nodes_expanded"], 1);
    EXPECT_EQ(facts["counts"]["instance_camera_expanded"], 1);
    EXPECT_EQ(facts["counts"]["transformations_expanded"],
              Json::parse(R"({"scale": 1, "translate": 1})"));
    EXPECT_EQ(facts["ids"]["materials"], Json::parse(R"(["orange"])"));
    EXPECT_EQ(facts["geometries"], Json::parse(R"([{"id": "tri", "name": "Tri", "kind": "mesh",
        "position_source": "pos", "position_count": 3,
        "position_min": [0.0, 0.0, 0.0], "position_max": [1.0, 1.0, 2.0],
        "position_sum": [1.0, 2.0, 2.0],
        "sources": [{"id": "pos", "stride": 3, "count": 3, "array_length": 9},
                    {"id": "nrm", "stride": 3, "count": 1, "array_length": 3}],
        "triangle_count": 1, "faces_by_kind": {"triangles": 1}}])"));
    EXPECT_EQ(
        facts["totals"],
        Json::parse(R"({"positions": 3, "triangles": 1, "faces_by_kind": {"triangles": 1}})"));
    EXPECT_EQ(facts["node_tree"][0], Json::parse(R"({"id": "outer", "name": null, "sid": null,
        "type": "NODE", "parent": null, "transformations": ["translate"]})"));
    EXPECT_EQ(facts["node_tree"][1], Json::parse(R"({"id": "inner", "name": null, "sid": "in",
        "type": "JOINT", "parent": "outer", "transformations": ["scale"]})"));
    EXPECT_EQ(facts["rest_world_matrices"][1], Json::parse(R"({"node": "inner",
        "world": [[2.0, 0.0, 0.0, 0.0], [0.0, 1.0, 0.0, 0.0], [0.0, 0.0, 1.0, 10.0],
                  [0.0, 0.0, 0.0, 1.0]]})"));
}

TEST_F(SceneTool, InfoForPeopleStaysShortHoweverDeepTheScene)
{
    const std::size_t depth = 500;
    std::string nodes;
    for (std::size_t i = 0; i < depth; ++i)
    {
        nodes += "<node id=\"n" + std::to_string(i) + "\">";
    }
    for (std::size_t i = 0; i < depth; ++i)
    {
        nodes += "</node>";
    }
    std::string text = readFile(tiny);
    text.insert(text.find("<node id=\"eye\""), nodes);
    std::ofstream(path("deep.dae")) << text;
    const std::string deep = path("deep.dae");
    const Outcome outcome = run({"info", deep.c_str()});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    for (const char* part :
         {"  scene \"vs\", Z_UP, a unit is 0.01 m\n", "  geometries       1  tri\n",
          "  lights           0\n", "  tri               3          1  (0, 0, 0)  (1, 1, 2)\n",
          "Nodes  503, 1 of them a joint\n",
          "    inner                         joint, geometry tri\n", "  ... and 463 more\n"})
    {
        EXPECT_THAT(outcome.out, HasSubstr(part));
    }
    EXPECT_EQ(run({"info", deep.c_str(), "--json"}).status, 0);
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
    const Outcome renaming = run({"merge", tiny.c_str(), tiny.c_str()});
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
    const Outcome discarding = run({"merge", tiny.c_str(), tiny.c_str(), "--flags", "29"});
    EXPECT_THAT(discarding.out, HasSubstr("geometries      1 discarded  tri\n"));
    EXPECT_THAT(discarding.out, HasSubstr("nodes           4 discarded  vs, outer, inner, eye\n"));
    EXPECT_THAT(discarding.out, Not(HasSubstr("renamed")));
    EXPECT_THAT(discarding.out, Not(HasSubstr("hidden"))) << "built-in layers are no news";
}

TEST_F(SceneTool, MergeTellsOfNodesThatJoinedAndOfOtherUnits)
{
    std::string text = readFile(tiny);
    text.replace(text.find("Z_UP"), 4, "Y_UP");
    text.replace(text.find("id=\"vs\""), 7, "id=\"v2\"");
    text.replace(text.find("#vs"), 3, "#v2");
    std::ofstream(path("other.dae")) << text;
    const std::string other = path("other.dae");
    // The root "v2" is new and comes first, so the nodes below it clash elsewhere.
    const Outcome renaming =
        run({"merge", tiny.c_str(), other.c_str(), other.c_str(), "--flags", "32"});
    EXPECT_THAT(renaming.err, HasSubstr("Y_UP and 0.01 m a unit, the base Z_UP and 0.01 m"));
    EXPECT_THAT(renaming.out, HasSubstr("nodes           1 added      v2\n"));
    // The second time it joins the first one, but the nodes below had been renamed.
    EXPECT_THAT(renaming.out, HasSubstr("                1 joined     v2\n"));
}

TEST_F(SceneTool, MergesUnderTheParentAskedFor)
{
    const Outcome known = run({"merge", tiny.c_str(), mirrored.c_str(), "--parent", "eye"});
    EXPECT_THAT(known.out, HasSubstr("under \"eye\""));
    EXPECT_THAT(known.err, IsEmpty());
    const Outcome unknown = run({"merge", tiny.c_str(), mirrored.c_str(), "--parent", "nobody"});
    EXPECT_EQ(unknown.status, 0);
    EXPECT_THAT(unknown.out, HasSubstr("under \"vs\""));
    EXPECT_THAT(unknown.err, HasSubstr("no node \"nobody\""));
}

TEST_F(SceneTool, PrintsEveryEventOnALine)
{
    const Outcome outcome = run({"merge", tiny.c_str(), tiny.c_str(), "--flags", "48", "--events"});
    // The one node that clashes, the scene's root, is discarded with all below it.
    EXPECT_THAT(outcome.out, HasSubstr("SceneUpdate  MaterialList\nSceneUpdate\n"
                                       "SceneUpdate  MaterialList\nSyncScene\n"));
    EXPECT_THAT(outcome.out, HasSubstr("events      3 SceneUpdate, 1 SyncScene\n"));
}

TEST_F(SceneTool, WritesTheWorldSpaceResultAsObj)
{
    const std::string obj = path("out.obj");
    const Outcome outcome =
        run({"merge", tiny.c_str(), mirrored.c_str(), "--flags", "1", "--obj", obj.c_str()});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    // Under a scale of (2, 1, 1) the normal (1, 1, 0) becomes (1/2, 1, 0) at unit length.
    EXPECT_THAT(readFile(obj), HasSubstr("mtllib out.mtl\n"
                                         "v 2 0 10\nv 0 1 10\nv 0 1 12\n"
                                         "vn 0.4472136 0.8944272 0\n"
                                         "g inner sym\nusemtl orange\n"
                                         "f 1//1 2//1 3//1\n"
                                         "v -2 0 10\nv 0 1 10\nv 0 1 12\n"
                                         "vn -0.4472136 0.8944272 0\n"));
    // Mirrored faces are turned around to look where their normals point.
    EXPECT_THAT(readFile(obj), HasSubstr("f 4//2 6//2 5//2\n"));
    EXPECT_THAT(readFile(path("out.mtl")), HasSubstr("newmtl orange\nKd 1 0.5 0\n"));
}

TEST_F(SceneTool, LeavesNothingBehindWhenTheOutputCannotBeWritten)
{
    fs::create_directory(path("folder.obj"));
    const std::vector<std::string> before = listFolder();
    for (const std::string& output :
         {path("missing/out.obj"), path("folder.obj"), std::string("/dev/full")})
    {
        SCOPED_TRACE(output);
        const Outcome outcome = run({"merge", tiny.c_str(), tiny.c_str(), "--obj", output.c_str()});
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
    const Outcome outcome = run({"merge", tiny.c_str(), tiny.c_str(), "--obj", obj.c_str()});
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, signal);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("can't write " + obj));
    EXPECT_EQ(listFolder(), before);
    EXPECT_EQ(readFile(obj), "former");
}

TEST(SceneToolText, LongListsOfNamesAreCut)
{
    const std::vector<std::string> names(50, "name");
    const std::string text = wrapNames(names, 90, 2);
    EXPECT_EQ(text, "name,\n" + std::string(90, ' ') + "name,\n" + std::string(90, ' ') +
                        "... and 48 more");
    EXPECT_EQ(wrapNames({"a", "b\n"}, 4, 1), "a, b?");
}
} // namespace velmoran::examples
