#include "tests/examples/ColladaText.h"

#include "scene/graph/LayerManager.h"
#include "scene/material/Effect.h"

namespace velmoran::examples::test
{
using ::testing::StartsWith;

namespace
{
std::string node(const std::string& content)
{
    return visualScene("<node id=\"n\">" + content + "</node>");
}

std::string triangles(const std::string& attributes, const std::string& inputs,
                      const std::string& indices)
{
    return quad("<triangles " + attributes + ">" + inputs + "<p>" + indices + "</p></triangles>");
}

std::string array(const std::string& arrayAttributes, const std::string& values,
                  const std::string& accessor)
{
    return "<library_geometries><geometry id=\"g\"><mesh><source id=\"s\"><float_array id=\"a\" " +
           arrayAttributes + ">" + values + "</float_array><technique_common>" + accessor +
           "</technique_common></source></mesh></geometry></library_geometries>";
}

std::string accessor(const std::string& attributes)
{
    return "<accessor source=\"#a\" " + attributes + "/>";
}

/// A skin of two joints and one weight on "quad".
std::string skin(const std::string& inputs, const std::string& vcount, const std::string& v)
{
    return quad("") +
           "<library_controllers><controller id=\"c\"><skin source=\"#quad\">"
           "<source id=\"names\"><Name_array>hip knee</Name_array></source>" +
           source("matrices", 1, 16, "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1") +
           source("weights", 1, 1, "1") + inputs + "<vertex_weights count=\"4\">" +
           "<input semantic=\"JOINT\" source=\"#names\" offset=\"0\"/>"
           "<input semantic=\"WEIGHT\" source=\"#weights\" offset=\"1\"/>"
           "<vcount>" +
           vcount + "</vcount><v>" + v +
           "</v></vertex_weights></skin></controller></library_controllers>";
}

struct Row
{
    const char* name;
    std::string body;
    const char* element; ///< where the message says it is
    const char* reason;
};
} // namespace

/// A scene that nothing may have touched.
class ColladaReaderErrorsTest : public ColladaTest
{
protected:
    void expectUntouched()
    {
        ASSERT_EQ(m_scene->getEffectLibrary().size(), 1U);
        EXPECT_EQ(m_scene->getEffectLibrary()[0]->getID(), "defaultEffect");
        EXPECT_EQ(m_scene->getGeometryManager(), m_geometry);
        EXPECT_EQ(m_scene->getGeometryManager()->getCount(), 0U);
        EXPECT_EQ(m_scene->getUpAxis(), scene::Y_UP);
        EXPECT_TRUE(m_scene->getNodeArray().empty());
        EXPECT_EQ(m_scene->getLayerManager()->getLayerName(6), "");
    }

    void expectRefused(const std::vector<Row>& rows)
    {
        for (const Row& row : rows)
        {
            SCOPED_TRACE(row.name);
            const ReadResult result = read("<asset><up_axis>Z_UP</up_axis></asset>" + row.body);
            EXPECT_FALSE(result.ok);
            EXPECT_THAT(result.error, StartsWith("doc.dae: <" + std::string(row.element)));
            EXPECT_THAT(result.error, HasSubstr(row.reason));
            EXPECT_EQ(result.error.find('\n'), std::string::npos);
            expectUntouched();
        }
    }

    const scene::GeometryManagerPtr m_geometry = m_scene->getGeometryManager();
};

TEST_F(ColladaReaderErrorsTest, WrongNumbersAndCountsAreRefused)
{
    const std::string v = VERTEX_INPUT;
    expectRefused({
        {"word behind a number", array("", "1 1.0abc", ""), "float_array id=\"a\"> (line 2)",
         "value 2, \"1.0abc\""},
        {"other spelling of NaN", array("", "nan", ""), "float_array", "\"nan\""},
        {"other spelling of INF", array("", "infinity", ""), "float_array", "is not a number"},
        {"hexadecimal", array("", "0x1p3", ""), "float_array", "is not a number"},
        {"too large for a float", array("", "1e39", ""), "float_array", "is not a number"},
        {"count above the values", array("count=\"4000000000\"", "1 2", ""), "float_array",
         "count is 4000000000, but it holds 2"},
        {"count below the values", array("count=\"1\"", "1 2", ""), "float_array", "holds 2"},
        {"count that is no count", array("count=\"-1\"", "", ""), "float_array", "not a count"},
        {"accessor beyond the array", array("", "1 2 3", accessor("count=\"2\" stride=\"2\"")),
         "accessor> of <source id=\"s\">", "2 tuples of 2"},
        {"accessor whose product wraps",
         array("", "1 2", accessor("count=\"4611686018427387905\" stride=\"4\"")), "accessor",
         "do not fit"},
        {"offset beyond the array", array("", "1", accessor("count=\"0\" offset=\"2\"")),
         "accessor", "do not fit"},
        {"stride 0", array("", "1", accessor("count=\"1\" stride=\"0\"")), "accessor", "stride"},
        {"transformation too short", node("<rotate>0 0 1</rotate>"), "rotate> of <node id=\"n\">",
         "3 numbers instead of 4"},
        {"negative index", triangles("", v, "0 1 -2"), "p> of <geometry id=\"quad\">", "negative"},
        {"index beyond the positions", triangles("", v, "0 1 4"), "triangles", "out of range"},
        {"index beyond 32 bits", triangles("", v, "0 1 4294967296"), "p>", "not an index"},
        {"index beyond the texture coordinates",
         triangles("", v + "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"0\"/>", "0 1 2"),
         "triangles", "there are 2 tuples"},
        {"two corners", triangles("", v, "0 1"), "triangles", "whole triangles"},
        {"half a corner",
         triangles("", v + "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"1\"/>", "0 1 2"),
         "p>", "whole corners of 2"},
        {"offset that no memory could hold",
         triangles("", v + "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"9000000000\"/>",
                   "0 1 2"),
         "p>", "whole corners"},
        {"fewer triangles than the count", triangles("count=\"2\"", v, "0 1 2"), "triangles",
         "count is 2, but it holds 1"},
        {"vcount above the indices",
         quad("<polylist>" + v + "<vcount>2147483647 2147483647 3</vcount><p>0 1 2</p></polylist>"),
         "polylist", "vcount asks for 4294967297 corners"},
        {"polylist count",
         quad("<polylist count=\"2\">" + v +
              "<vcount>3</vcount><p>0 1 2</p>"
              "</polylist>"),
         "polylist", "count is 2"},
        {"joint that is not there", skin("", "1 0 0 0", "2 0"), "v> of <controller id=\"c\">",
         "joint index 2"},
        {"weight of the bind shape", skin("", "1 0 0 0", "-1 -1"), "v>", "weight index -1"},
        {"influences that are not there", skin("", "1 0 0 9", "0 0"), "vertex_weights",
         "vcount asks for 10"},
        {"vcount that differs from its count", skin("", "1", "0 0"), "vertex_weights", "holds 1"},
        {"fewer matrices than joints",
         skin("<joints><input semantic=\"JOINT\" source=\"#names\"/>"
              "<input semantic=\"INV_BIND_MATRIX\" source=\"#matrices\"/></joints>",
              "0 0 0 0", ""),
         "joints", "1 inverse bind matrices for 2 joints"},
    });
}

TEST_F(ColladaReaderErrorsTest, ReferencesThatLeadNowhereAreRefused)
{
    const auto instance = [](const char* kind)
    { return node("<instance_" + std::string(kind) + " url=\"#gone\"/>"); };
    expectRefused({
        {"accessor", array("", "1", "<accessor source=\"#gone\" count=\"1\"/>"), "accessor",
         "no such <float_array>"},
        {"source", triangles("", "<input semantic=\"VERTEX\" source=\"#pos\" offset=\"0\"/>", ""),
         "input", "that is the id of a <source>"},
        {"input", triangles("", "<input semantic=\"NORMAL\" source=\"#gone\" offset=\"0\"/>", ""),
         "input", "no such <source>"},
        {"geometry", instance("geometry"), "instance_geometry> of <node id=\"n\">",
         "\"#gone\", but there is no such <geometry>"},
        {"other document", node("<instance_geometry url=\"other.dae#quad\"/>"), "instance_geometry",
         "not in this document"},
        {"no url", node("<instance_geometry/>"), "instance_geometry", "url is missing"},
        {"controller", instance("controller"), "instance_controller", "<controller>"},
        {"camera", instance("camera"), "instance_camera", "<camera>"},
        {"light", instance("light"), "instance_light", "<light>"},
        {"node", instance("node"), "instance_node", "<node>"},
        {"skeleton",
         skin("", "0 0 0 0", "") + node("<instance_controller url=\"#c\">"
                                        "<skeleton>#gone</skeleton>"
                                        "</instance_controller>"),
         "skeleton", "<node>"},
        {"material",
         quad("") + node("<instance_geometry url=\"#quad\"><bind_material>"
                         "<technique_common><instance_material symbol=\"s\" "
                         "target=\"#gone\"/></technique_common></bind_material>"
                         "</instance_geometry>"),
         "instance_material", "<material>"},
        {"effect",
         "<library_materials><material id=\"m\"><instance_effect url=\"#gone\"/>"
         "</material></library_materials>",
         "instance_effect", "<effect>"},
        {"skinned geometry",
         "<library_controllers><controller id=\"c\"><skin source=\"#gone\"/>"
         "</controller></library_controllers>",
         "skin", "<geometry> or <controller>"},
        {"sampler",
         "<library_animations><animation><channel source=\"#gone\" target=\"n/t\"/>"
         "</animation></library_animations>",
         "channel", "<sampler>"},
        {"visual scene", "<scene><instance_visual_scene url=\"#gone\"/></scene>",
         "instance_visual_scene", "<visual_scene>"},
    });
}

TEST_F(ColladaReaderErrorsTest, CirclesAndExplosionsAreRefused)
{
    std::string doubling = "<node id=\"d0\"/>";
    for (int i = 1; i < 60; ++i)
    {
        const std::string use = "<instance_node url=\"#d" + std::to_string(i - 1) + "\"/>";
        doubling += "<node id=\"d" + std::to_string(i) + "\">" + use + use + "</node>";
    }
    std::string symbols;
    std::string sources;
    for (int i = 0; i < 3000; ++i)
    {
        const std::string id = std::to_string(i);
        symbols += "<triangles material=\"" + id + "\">" + VERTEX_INPUT + "</triangles>";
        sources += "<source id=\"s" + id +
                   "\"><technique_common>"
                   "<accessor source=\"#pos-a\" count=\"12\"/></technique_common></source>";
    }
    expectRefused({
        {"node in itself", node("<instance_node url=\"#n\"/>"), "instance_node", "lead back"},
        {"circle in a library that nobody uses",
         "<library_nodes><node id=\"a\"><node><instance_node url=\"#b\"/></node></node>"
         "<node id=\"b\"><instance_node url=\"#a\"/></node></library_nodes>",
         "instance_node", "lead back"},
        {"controllers in a circle",
         "<library_controllers><controller id=\"a\"><skin source=\"#b\"/></controller>"
         "<controller id=\"b\"><skin source=\"#a\"/></controller></library_controllers>",
         "controller id=\"a\"", "leads back"},
        {"2^59 copies",
         "<library_nodes>" + doubling + "</library_nodes>" + node("<instance_node url=\"#d59\"/>"),
         "visual_scene", "too many"},
        {"9,000,000 default bindings",
         quad(symbols) + node(repeat(3000, "<instance_geometry url=\"#quad\"/>")), "visual_scene",
         "too many"},
        {"an array that 3,000 accessors read",
         "<library_geometries><geometry id=\"g\"><mesh><source id=\"s\"><float_array "
         "id=\"pos-a\">" +
             repeat(10000, "0 ") + "</float_array></source>" + sources +
             "</mesh></geometry></library_geometries>",
         "source id=\"s", "too much"},
    });
}

TEST_F(ColladaReaderErrorsTest, WhatIsNotColladaIsRefused)
{
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"", "document (line 1): not well-formed XML"},
        {"{\"scene\": 1}", "document (line 1): not well-formed XML"},
        {"<COLLADA><asset>", "ends too early"},
        {"<COLLADA>\n<asset>\n</COLLADA>", "(line 3)"},
        {"<COLLADA/><COLLADA/>", "second root element"},
        {"<svg/>", "<svg> (line 1): the root element"},
        {std::string("<COLLADA>\0<", 11), "not well-formed"},
    };
    for (const auto& [text, message] : rows)
    {
        const ReadResult result = ColladaReader().readText(text, "doc.dae", m_scene);
        EXPECT_FALSE(result.ok);
        EXPECT_THAT(result.error, AllOf(StartsWith("doc.dae: "), HasSubstr(message)));
        expectUntouched();
    }
    EXPECT_THAT(ColladaReader().readFile("no/such.dae", m_scene).error,
                "no/such.dae: the file can't be read: No such file or directory");
    EXPECT_FALSE(ColladaReader().readFile(".", m_scene).ok);
    EXPECT_FALSE(ColladaReader().readText("<COLLADA/>", "doc.dae", scene::SceneManagerPtr()).ok);
}

TEST_F(ColladaReaderErrorsTest, RepeatedIDsAreTakenFromTheFirst)
{
    const ReadResult result =
        readFine(quad("") +
                 "<library_geometries><geometry id=\"quad\" name=\"Other\"><mesh/></geometry>"
                 "<geometry/></library_geometries>" +
                 visualScene("<node id=\"quad\"/><node id=\"quad\"/>"));
    EXPECT_EQ(result.warnings.size(), 4U);
    EXPECT_THAT(result.warnings[0], HasSubstr("<geometry id=\"quad\"> (line 2): line 2 has"));
    EXPECT_EQ(getMesh("quad")->getName(), "Quad");
    EXPECT_EQ(m_scene->getRoot()->getChildCount(), 2U);
    EXPECT_NE(m_scene->getRoot()->getChildNode(1)->getID(), "quad");
}

// Whatever one wrong byte makes of a document, it is read or refused as a whole.
TEST_F(ColladaReaderErrorsTest, DamagedDocumentsAreReadOrRefused)
{
    const std::string whole = document(
        triangles("count=\"1\"", VERTEX_INPUT, "0 1 2") +
        "<library_animations><animation id=\"a\"><sampler id=\"sm\"><input semantic=\"INPUT\" "
        "source=\"#uv\"/></sampler><channel source=\"#sm\" target=\"n/t.X\"/></animation>"
        "</library_animations>" +
        node("<translate sid=\"t\">1 2 3</translate><instance_geometry url=\"#quad\"/>"
             "<node><instance_node url=\"#m\"/></node>") +
        "<library_nodes><node id=\"m\"/></library_nodes>");
    ASSERT_TRUE(ColladaReader().readText(whole, "doc.dae", m_scene).ok);
    for (std::size_t i = 0; i < whole.size(); ++i)
    {
        EXPECT_FALSE(ColladaReader().readText(whole.substr(0, i), "doc.dae", m_scene).ok) << i;
        for (const char wrong : {'9', '-', '#', '>'})
        {
            std::string damaged = whole;
            damaged[i] = wrong;
            const ReadResult result = ColladaReader().readText(damaged, "doc.dae", m_scene);
            EXPECT_EQ(result.ok, result.error.empty());
            EXPECT_TRUE(result.ok || result.error.rfind("doc.dae: ", 0) == 0) << result.error;
        }
    }
}
} // namespace velmoran::examples::test
