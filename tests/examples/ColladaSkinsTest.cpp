#include "tests/examples/ColladaText.h"

#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Skin.h"

namespace velmoran::examples::test
{
namespace
{
/// A controller "skin" of the quad whose joints are the words in `names`, one for each vertex.
std::string skin(const std::string& names, int count, const std::string& kind = "Name_array")
{
    std::string matrices;
    for (int i = 0; i < count; ++i)
    {
        matrices += "1 0 0 " + std::to_string(i) + " 0 1 0 0 0 0 1 0 0 0 0 1 ";
    }
    return quad(triangleList("")) +
           "<library_controllers><controller id=\"skin\"><skin source=\"#quad\">"
           "<source id=\"joints\"><" +
           kind + ">" + names + "</" + kind + "></source>" + source("ibm", count, 16, matrices) +
           source("w", 1, 1, "1") +
           "<joints><input semantic=\"JOINT\" source=\"#joints\"/>"
           "<input semantic=\"INV_BIND_MATRIX\" source=\"#ibm\"/></joints>"
           "<vertex_weights count=\"4\"><input semantic=\"JOINT\" source=\"#joints\" offset=\"0\"/>"
           "<input semantic=\"WEIGHT\" source=\"#w\" offset=\"1\"/><vcount>1 1 0 1</vcount>"
           "<v>0 0 0 0 -1 0</v></vertex_weights></skin></controller></library_controllers>";
}

std::string instance(const std::string& skeletons)
{
    return "<instance_controller url=\"#skin\">" + skeletons + "</instance_controller>";
}

std::string skeleton(const std::string& id)
{
    return "<skeleton>#" + id + "</skeleton>";
}

class ColladaSkinsTest : public ColladaTest
{
protected:
    scene::InstanceControllerPtr getInstance(const std::string& node, unsigned int index = 0)
    {
        return m_scene->getNodeByID(node)->getInstanceController(index);
    }

    /// The joint names of the skin that a node instances. The root is the last one: the
    /// influence of the bind shape.
    std::vector<std::string> getJoints(const std::string& node, unsigned int index = 0)
    {
        const scene::SkinPtr skin = getInstance(node, index)->getController()->getSkin();
        EXPECT_EQ(skin->getJointsInput("JOINT"), skin->getVertexWeightsInput("JOINT"));
        std::vector<std::string> names = skin->getJointsInput("JOINT")->getNameList();
        EXPECT_EQ(names.back(), "vs");
        names.pop_back();
        return names;
    }
};
} // namespace

TEST_F(ColladaSkinsTest, ScopedNamesAreLookedForBelowTheSkeletonsBreadthFirst)
{
    // "hip" also stands outside, and deeper, but before in the document; the second
    // skeleton is asked for what the first one lacks; a name may be the skeleton itself.
    const ReadResult result =
        readFine(skin("body hip tail", 3) +
                 visualScene("<node id=\"other\" sid=\"hip\"/>"
                             "<node id=\"first\" sid=\"body\"><node id=\"left\"><node id=\"deep\" "
                             "sid=\"hip\"/></node><node id=\"near\" sid=\"hip\"/><node id=\"n\">" +
                             instance(skeleton("first") + skeleton("second")) +
                             "</node></node><node id=\"second\"><node id=\"hip2\" sid=\"hip\"/>"
                             "<node name=\"end\" sid=\"tail\"/></node>"));
    EXPECT_THAT(result.warnings, IsEmpty());
    const scene::NodePtr end = m_scene->getNodeByName("end"); // has no ID in the document
    EXPECT_THAT(getJoints("n"), ElementsAre("first", "near", end->getID()));
    EXPECT_THAT(getInstance("n")->getSkeletons(), ElementsAre("first", "second"));
    EXPECT_EQ(getInstance("n")->getController(), m_scene->getControllerById("skin"));
}

TEST_F(ColladaSkinsTest, NamesMayBeIDsOrPathsAndStayWhenTheyLeadNowhere)
{
    const std::tuple<std::string, std::string, std::vector<std::string>, std::string> rows[] = {
        // A scoped ID goes before an ID, wherever the latter stands.
        {"Name_array", "a hip foot arm", {"top", "hip", "leg", "arm"}, ""},
        {"Name_array",
         "b gone leg \n arm",
         {"b", "gone", "leg", "arm"},
         "2 of its 4 joints name no node: \"b\", \"gone\""},
        {"IDREF_array", "hip top arm leg", {"hip", "top", "arm", "leg"}, ""},
        {"IDREF_array",
         "hip a foot arm",
         {"hip", "a", "foot", "arm"},
         "1 of its 4 joints name no node: \"a\""},
        {"SIDREF_array", "arm/foot ./a top/bent/foot ./foot", {"sole", "top", "leg", "leg"}, ""},
        {"SIDREF_array",
         "top/a gone/a hip ./foot/foot",
         {"top/a", "gone/a", "hip", "./foot/foot"},
         "3 of its 4 joints name no node: \"top/a\", \"gone/a\", \"./foot/foot\""},
    };
    for (const auto& [kind, names, joints, missing] : rows)
    {
        SCOPED_TRACE(kind + ": " + names);
        const ReadResult result = readFine(
            skin(names, 4, kind) +
            visualScene("<node id=\"foot\"/><node id=\"top\" sid=\"a\"><node id=\"hip\" "
                        "sid=\"bent\"><node id=\"leg\" sid=\"foot\"/></node></node>"
                        "<node id=\"arm\"><node id=\"sole\" sid=\"foot\"/></node><node id=\"n\">" +
                        instance(skeleton("top")) + "</node>"));
        EXPECT_THAT(getJoints("n"), ::testing::ElementsAreArray(joints));
        EXPECT_EQ(result.warnings.size(), missing.empty() ? 0U : 1U);
        EXPECT_THAT(result.warnings, ::testing::Each(HasSubstr(missing)));
    }
}

TEST_F(ColladaSkinsTest, OtherSkeletonsGetAControllerOfTheirOwn)
{
    const std::string leg = "<node id=\"ID\" sid=\"hip\"><node id=\"IDs\" sid=\"knee\"/></node>";
    std::string legs;
    for (const char* id : {"left", "right"})
    {
        std::string text = leg;
        text.replace(text.find("ID"), 2, id);
        legs += text.replace(text.find("IDs"), 2, id);
    }
    readFine(skin("hip knee", 2) +
             visualScene(legs + "<node id=\"n\">" + instance(skeleton("left")) +
                         instance(skeleton("right")) + instance(skeleton("right")) + instance("") +
                         "</node>"));
    EXPECT_THAT(getJoints("n", 0), ElementsAre("left", "lefts"));
    EXPECT_THAT(getJoints("n", 1), ElementsAre("right", "rights"));
    const scene::ControllerPtr original = m_scene->getControllerById("skin");
    const scene::ControllerPtr copy = getInstance("n", 1)->getController();
    EXPECT_EQ(getInstance("n", 0)->getController(), original);
    EXPECT_EQ(getInstance("n", 2)->getController(), copy);
    EXPECT_EQ(getInstance("n", 3)->getController(), original) << "without skeleton: the first leg";
    EXPECT_THAT(m_scene->getControllersLibrary(), ElementsAre(original, copy));
    EXPECT_EQ(m_scene->getControllerById(copy->getID()), copy);
    const scene::SkinPtr skin = copy->getSkin();
    EXPECT_EQ(skin->getSourceGeometry(), getMesh("quad"));
    EXPECT_EQ(skin->getV(), original->getSkin()->getV());
    EXPECT_EQ(skin->getVCount(), original->getSkin()->getVCount());
    EXPECT_EQ(skin->getJointsInput("INV_BIND_MATRIX"),
              original->getSkin()->getJointsInput("INV_BIND_MATRIX"));
    EXPECT_EQ(skin->getStreamById("joints"), skin->getJointsInput("JOINT"));
}

TEST_F(ColladaSkinsTest, CopiedCharactersMoveWithTheirOwnSkeletons)
{
    for (const char* kind : {"Name_array", "IDREF_array"})
    {
        SCOPED_TRACE(kind);
        // The skeleton is copied inside of what is copied; the last instance stands outside.
        const ReadResult result =
            readFine(skin("hip gone", 2, kind) +
                     "<library_nodes><node id=\"bones\"><node id=\"hip\" sid=\"hip\"/></node>"
                     "<node id=\"person\"><node id=\"body\">" +
                     instance(skeleton("bones")) +
                     "</node><instance_node url=\"#bones\"/></node></library_nodes>" +
                     visualScene("<node id=\"crowd\"><instance_node url=\"#person\"/>"
                                 "<instance_node url=\"#person\"/></node><node id=\"n\">" +
                                 instance(skeleton("bones")) + "</node>"));
        EXPECT_THAT(result.warnings,
                    ElementsAre(HasSubstr("<node id=\"body\">"), HasSubstr("<node id=\"n\">")));
        const scene::NodePtr crowd = m_scene->getNodeByID("crowd");
        for (const unsigned int person : {0U, 1U})
        {
            const scene::NodePtr body = crowd->getChildNode(person)->getChildNode(0);
            const scene::NodePtr bones = crowd->getChildNode(person)->getChildNode(1);
            EXPECT_THAT(getJoints(body->getID()),
                        ElementsAre(bones->getChildNode(0)->getID(), "gone"));
            EXPECT_THAT(getInstance(body->getID())->getSkeletons(), ElementsAre(bones->getID()));
        }
        EXPECT_THAT(getJoints("n"), ElementsAre("hip", "gone"));
    }
}

TEST_F(ColladaSkinsTest, WithoutASkeletonInTheSceneAllOfThatIsSearched)
{
    const std::string nodes = "<library_nodes><node id=\"lost\"><node sid=\"hip\"/></node>"
                              "</library_nodes>" +
                              visualScene("<node id=\"a\"><node id=\"b\" sid=\"hip\"/></node>"
                                          "<node id=\"n\">SKIN</node>");
    for (const std::string& skeletons : {std::string(), skeleton("lost")})
    {
        SCOPED_TRACE(skeletons);
        std::string text = skin("hip", 1) + nodes;
        text.replace(text.find("SKIN"), 4, instance(skeletons));
        const ReadResult result = readFine(text);
        EXPECT_THAT(getJoints("n"), ElementsAre("b"));
        EXPECT_EQ(result.warnings.size(), skeletons.empty() ? 0U : 1U);
    }
    EXPECT_THAT(getInstance("n")->getSkeletons(), ElementsAre("lost"));
}

TEST_F(ColladaSkinsTest, InfluencesOfTheBindShapeGoToTheRoot)
{
    readFine(skin("hip", 1) + visualScene("<node id=\"hip\">" + instance("") + "</node>"));
    const scene::SkinPtr skin = getInstance("hip")->getController()->getSkin();
    EXPECT_THAT(skin->getV(), ElementsAre(0, 0, 0, 0, 1, 0));
    EXPECT_THAT(skin->getJointsInput("JOINT")->getNameList(), ElementsAre("hip", "vs"));
    const scene::StreamPtr matrices = skin->getJointsInput("INV_BIND_MATRIX");
    EXPECT_EQ(matrices->getCount(), 2);
    const Eigen::Map<const Eigen::Matrix4f> last(matrices->getData().data() + 16);
    EXPECT_TRUE(last.isIdentity());
}

TEST_F(ColladaSkinsTest, SkinsThatShareASourceAreBoundEachForItself)
{
    std::string text = skin("hip", 1);
    const std::string controller = "<controller id=\"skin\">";
    const std::size_t begin = text.find(controller);
    const std::size_t end = text.find("</library_controllers>");
    std::string second = text.substr(begin, end - begin);
    second.replace(0, controller.size(), "<controller id=\"second\">");
    second.erase(second.find("<source"), second.rfind("</source>") + 9 - second.find("<source"));
    text.insert(end, second);
    readFine(text + visualScene("<node id=\"one\"><node id=\"h1\" sid=\"hip\"/>" +
                                instance(skeleton("one")) +
                                "</node><node id=\"two\"><node id=\"h2\" sid=\"hip\"/>"
                                "<instance_controller url=\"#second\"><skeleton>#two</skeleton>"
                                "</instance_controller></node>"));
    EXPECT_THAT(getJoints("one"), ElementsAre("h1"));
    EXPECT_THAT(getJoints("two"), ElementsAre("h2"));
    EXPECT_EQ(getInstance("two")->getController(), m_scene->getControllerById("second"));
}

TEST_F(ColladaSkinsTest, ListsThatAreNoneOfTheirKindAreRefused)
{
    const std::string good = skin("hip", 1);
    const auto spoil = [&good](const std::string& from, const std::string& to)
    {
        std::string text = good;
        return text.replace(text.find(from), from.size(), to);
    };
    const std::string nodes = visualScene("<node id=\"n\"/>");
    EXPECT_THAT(read(spoil("semantic=\"JOINT\" source=\"#joints\"/>",
                           "semantic=\"JOINT\" source=\"#w\"/>") +
                     nodes)
                    .error,
                HasSubstr("<joints> of <controller id=\"skin\"> (line 2): its JOINT input has 1 "
                          "joints, but 0 names"));
    EXPECT_THAT(read(spoil("source=\"#w\" offset", "source=\"#ibm\" offset") + nodes).error,
                HasSubstr("its WEIGHT input has more than one number for a weight"));
    EXPECT_THAT(readFine(spoil("\"INV_BIND_MATRIX\"", "\"OTHER\"") + nodes).warnings,
                ElementsAre(HasSubstr("it can't be skinned: its joints have no INV_BIND_MATRIX")));
}
} // namespace velmoran::examples::test
