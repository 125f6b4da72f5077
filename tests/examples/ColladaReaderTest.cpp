#include "tests/examples/ColladaText.h"

#include "scene/animation/Animation.h"
#include "scene/animation/Sampler.h"
#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Morph.h"
#include "scene/deform/Skin.h"
#include "scene/graph/Camera.h"
#include "scene/graph/CameraInstance.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/Light.h"
#include "scene/graph/TransformationRotate.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

#include <cmath>
#include <limits>
#include <set>

namespace velmoran::examples::test
{
using ColladaReaderTest = ColladaTest;

TEST_F(ColladaReaderTest, SettingsAndRootComeFromTheDocument)
{
    readFine("<asset><unit meter=\"0.01\"/><up_axis>Z_UP</up_axis></asset>" + visualScene(""));
    EXPECT_EQ(m_scene->getUpAxis(), scene::Z_UP);
    EXPECT_EQ(m_scene->getMeterUnit(), 0.01F);
    EXPECT_EQ(m_scene->getRoot()->getID(), "vs");
    EXPECT_EQ(m_scene->getRoot()->getName(), "stage");
}

TEST_F(ColladaReaderTest, ElementsComeInAnyOrderAndUnknownOnesArePassedOver)
{
    readFine(
        "<scene><extra/><instance_visual_scene url=\"#second\"/></scene>"
        "<library_visual_scenes><asset/><visual_scene id=\"first\"/><visual_scene id=\"second\">"
        "<node id=\"n\"><extra><node id=\"n\"/></extra><hologram/>"
        "<instance_geometry url=\"#quad\"/></node></visual_scene></library_visual_scenes>"
        "<future><node id=\"other\"/></future>" +
        quad(""));
    EXPECT_EQ(m_scene->getRoot()->getID(), "second");
    EXPECT_EQ(m_scene->getNodeByID("n")->getInstanceGeometry(0)->getGeometry(), getMesh("quad"));
}

TEST_F(ColladaReaderTest, AStreamHoldsWhatItsAccessorPicks)
{
    readFine("<library_geometries><geometry id=\"g\"><mesh><source id=\"picked\">"
             "<float_array id=\"a\" count=\"8\">9 1 2 <!-- odd --> 3 4 5 6 9</float_array>"
             "<technique_common><accessor source=\"#a\" offset=\"1\" count=\"2\" stride=\"3\">"
             "<param name=\"X\" type=\"float\"/><param type=\"float\"/></accessor>"
             "</technique_common></source>"
             "<source id=\"bools\"><bool_array count=\"2\">true 0</bool_array></source>"
             "<source id=\"ints\"><int_array count=\"2\">-7 +8</int_array></source>"
             "<source id=\"names\"><Name_array count=\"2\">hip knee</Name_array></source>"
             "</mesh></geometry></library_geometries>");
    const scene::StreamPtr picked = getMesh("g")->getStream("picked");
    EXPECT_THAT(picked->getData(), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(picked->getStride(), 3);
    EXPECT_EQ(picked->getCount(), 2);
    EXPECT_THAT(picked->getParamList(),
                ElementsAre(scene::Stream::Param("X", "float"), scene::Stream::Param("", "float")));
    EXPECT_THAT(getMesh("g")->getStream("bools")->getData(), ElementsAre(1, 0));
    EXPECT_THAT(getMesh("g")->getStream("ints")->getData(), ElementsAre(-7, 8));
    const scene::StreamPtr names = getMesh("g")->getStream("names");
    EXPECT_THAT(names->getNameList(), ElementsAre("hip", "knee"));
    EXPECT_THAT(names->getData(), IsEmpty());
    EXPECT_EQ(names->getCount(), 2);
}

TEST_F(ColladaReaderTest, EveryKindOfFaceBecomesTriangles)
{
    const std::string& input = VERTEX_INPUT;
    const std::tuple<const char*, std::string, std::vector<unsigned int>, std::size_t> rows[] = {
        {"triangles in two lists",
         "<triangles count=\"2\">" + input + "<p>0 1 2</p><p>0 2 3</p></triangles>",
         {0, 1, 2, 0, 2, 3},
         0},
        {"no triangles", "<triangles count=\"0\">" + input + "</triangles>", {}, 0},
        {"polylist with a line in it",
         "<polylist count=\"3\">" + input +
             "<vcount>3 2 4</vcount><p>3 2 1 0 1 0 1 2 3</p></polylist>",
         {3, 2, 1, 0, 1, 2, 0, 2, 3},
         1},
        {"polygons, one with a hole",
         "<polygons count=\"2\">" + input + "<p>0 1 2</p><ph><p>0 1 2 3</p><h>1 2 3</h></ph>" +
             "</polygons>",
         {0, 1, 2, 0, 1, 2, 0, 2, 3},
         1},
        {"fan",
         "<trifans count=\"1\">" + input + "<p>3 0 1 2</p></trifans>",
         {3, 0, 1, 3, 1, 2},
         0},
        {"strip", // every second triangle is turned
         "<tristrips count=\"1\">" + input + "<p>0 1 2 3 0</p></tristrips>",
         {0, 1, 2, 2, 1, 3, 2, 3, 0},
         0},
    };
    for (const auto& [name, primitive, indices, warnings] : rows)
    {
        SCOPED_TRACE(name);
        EXPECT_EQ(readFine(visualScene("") + quad(primitive)).warnings.size(), warnings);
        EXPECT_EQ(getMesh("quad")->getPrimitive(0)->getIndexStream(), indices);
    }
}

TEST_F(ColladaReaderTest, LinesAreLeftOutWithAWarning)
{
    const ReadResult result =
        readFine(visualScene("") + quad("<lines count=\"1\">" + VERTEX_INPUT +
                                        "<p>0 1</p></lines><triangles count=\"0\"/>"));
    EXPECT_EQ(getMesh("quad")->getPrimitiveCount(), 0U);
    EXPECT_THAT(result.warnings,
                ElementsAre(HasSubstr("doc.dae: <lines> of <geometry id=\"quad\">"),
                            HasSubstr("no VERTEX input")));
}

TEST_F(ColladaReaderTest, InputsKeepTheirOffsetsInDenseRecords)
{
    // Offsets 2 and 0 as written; offset 1 is used by no input.
    readFine(quad("<triangles material=\"paint\" count=\"1\">"
                  "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"2\" set=\"1\"/>" +
                  VERTEX_INPUT + "<p>0 99 1 2 99 0 3 99 1</p></triangles>" + "<triangles>" +
                  VERTEX_INPUT + "<p>0 1 2</p></triangles>"));
    const scene::MeshPtr mesh = getMesh("quad");
    const auto& mappings = mesh->getPrimitive(0)->getStreamMapping();
    ASSERT_EQ(mappings.size(), 2U);
    EXPECT_EQ(mappings[0].getSemantic(), scene::VERTEX);
    EXPECT_EQ(mappings[0].getOffset(), 0);
    EXPECT_EQ(mappings[0].getStream()->getID(), "v");
    EXPECT_EQ(mappings[1].getSemantic(), scene::TEXCOORD1);
    EXPECT_EQ(mappings[1].getOffset(), 1);
    EXPECT_EQ(mappings[1].getStream(), mesh->getStream("uv"));
    EXPECT_THAT(mesh->getPrimitive(0)->getIndexStream(), ElementsAre(0, 1, 2, 0, 3, 1));
    EXPECT_EQ(mesh->getPrimitive(0)->getMaterialSymbol(), "paint");
    EXPECT_EQ(mesh->getPrimitive(1)->getMaterialSymbol(), "velmoran_material");
    EXPECT_EQ(mesh->getVerticesID(), "v");
    ASSERT_EQ(mesh->getVertices().size(), 1U);
    EXPECT_EQ(mesh->getVertices()[0].getStream(), mesh->getStream("pos"));
}

TEST_F(ColladaReaderTest, TextureSetsAreTakenWhenTheyTellInputsApart)
{
    // The set attributes, "" for none, and the set of each semantic.
    const std::pair<std::vector<std::string>, std::vector<int>> rows[] = {
        {{"3", "1"}, {3, 1}}, {{"", "1"}, {0, 1}}, {{"1", "1"}, {0, 1}}, {{"0", "8"}, {0, 1}}};
    for (const auto& [attributes, expected] : rows)
    {
        SCOPED_TRACE(::testing::PrintToString(attributes));
        std::string inputs = VERTEX_INPUT;
        for (const std::string& set : attributes)
        {
            inputs += "<input semantic=\"TEXCOORD\" source=\"#uv\" offset=\"1\"" +
                      (set.empty() ? "" : " set=\"" + set + "\"") + "/>";
        }
        readFine(quad("<triangles>" + inputs + "</triangles>"));
        std::vector<int> sets;
        for (const scene::StreamMapping& mapping :
             getMesh("quad")->getPrimitive(0)->getStreamMapping())
        {
            sets.push_back(mapping.getSemantic() - scene::TEXCOORD);
        }
        sets.erase(sets.begin()); // VERTEX
        EXPECT_EQ(sets, expected);
    }
}

TEST_F(ColladaReaderTest, NodesKeepTheirTransformationsInOrder)
{
    readFine(
        visualScene("<node id=\"n\" sid=\"s\" name=\"N\" type=\"JOINT\" layer=\"front visible\">"
                    "<skew>45 1 0 0 0 1 0</skew><scale sid=\"size\">1 1 1</scale>"
                    "<lookat>0 0 0 0 0 -1 0 1 0</lookat><rotate sid=\"turn\">0 0 2 90</rotate>"
                    "<matrix>1 0 0 5 0 1 0 6 0 0 1 7 0 0 0 1</matrix>"
                    "<translate>1 0 0</translate><node/></node>"));
    const scene::NodePtr node = m_scene->getNodeByID("n");
    EXPECT_EQ(node->getSID() + node->getName() + node->getType(), "sNJOINT");
    EXPECT_THAT(node->getLayersNames(), ElementsAre("visible", "front"));
    EXPECT_EQ(node->getChildNode(0)->getType(), "");
    EXPECT_EQ(node->getChildNode(0)->getID().substr(0, 4), "Node");

    std::vector<int> kinds;
    for (const scene::ITransformationPtr& each : node->getOriginalTransformations())
    {
        kinds.push_back(each->getType());
    }
    EXPECT_THAT(kinds, ElementsAre(4, 3, 0, 2, 1, 5));
    EXPECT_EQ(node->getOriginalTransformations()[1]->getSid(), "size");
    // The axis has unit length; turned by 90 degrees about z, x goes to y and y to -x.
    const Eigen::Vector3f place = node->getTransformations().block<3, 1>(0, 3);
    EXPECT_TRUE(place.isApprox(Eigen::Vector3f(-6, 5 + 1, 7), 1e-5F)) << place.transpose();
}

TEST_F(ColladaReaderTest, NumbersAreReadAsXmlWritesThem)
{
    constexpr float INF = std::numeric_limits<float>::infinity();
    const std::pair<std::string, float> rows[] = {
        {"+1.5", 1.5F},   {"-.5", -0.5F}, {"1.", 1.0F},   {"1E2", 100.0F},  {"1e-60", 0.0F},
        {"1e-400", 0.0F}, {"INF", INF},   {"-INF", -INF}, {"1e-40", 1e-40F}};
    for (const auto& [word, value] : rows)
    {
        SCOPED_TRACE(word);
        readFine("<library_geometries><geometry id=\"g\"><mesh><source id=\"s\"><float_array>" +
                 word + "\tNaN</float_array></source></mesh></geometry></library_geometries>");
        const std::vector<float> data = getMesh("g")->getStream("s")->getData();
        ASSERT_EQ(data.size(), 2U);
        EXPECT_EQ(data[0], value);
        EXPECT_TRUE(std::isnan(data[1]));
    }
}

TEST_F(ColladaReaderTest, CamerasAndLightsAreConvertedAndPlaced)
{
    const auto camera = [](const char* id, const char* lens)
    {
        return "<camera id=\"" + std::string(id) + "\"><optics><technique_common>" + lens +
               "</technique_common></optics></camera>";
    };
    readFine(
        "<library_cameras>" +
        camera("wide", "<perspective><xfov>90</xfov><aspect_ratio>2</aspect_ratio>"
                       "<znear>0.5</znear><zfar>20</zfar></perspective>") +
        camera("tall", "<perspective><yfov>30</yfov><xfov>1</xfov></perspective>") +
        camera("flat", "<orthographic><xmag>6</xmag><aspect_ratio>1.5</aspect_ratio>"
                       "</orthographic>") +
        "</library_cameras><library_lights><light id=\"lamp\" name=\"Lamp\"><technique_common>"
        "<spot><color>1 0.5 0</color><linear_attenuation>2</linear_attenuation>"
        "<falloff_angle>60</falloff_angle></spot></technique_common></light></library_lights>" +
        visualScene("<node id=\"n\"><instance_camera url=\"#wide\"/>"
                    "<instance_light url=\"#lamp\"/></node>"));
    const scene::CameraPtr wide = m_scene->getCameraByID("wide");
    EXPECT_NEAR(wide->getYFov(), 53.130102F, 1e-4F); // 2 atan(tan(45 deg) / 2)
    EXPECT_EQ(wide->getZNear(), 0.5F);
    EXPECT_EQ(wide->getZFar(), 20.0F);
    EXPECT_EQ(m_scene->getCameraByID("tall")->getYFov(), 30.0F);
    EXPECT_EQ(m_scene->getCameraByID("flat")->getCameraType(), scene::Camera::ORTHOGRAPHIC);
    EXPECT_EQ(m_scene->getCameraByID("flat")->getYFov(), 4.0F);
    const scene::LightPtr lamp = m_scene->getLightByID("lamp");
    EXPECT_EQ(lamp->getLightType(), scene::Light::SPOT);
    EXPECT_EQ(lamp->getColor(), Eigen::Vector3f(1.0F, 0.5F, 0.0F));
    EXPECT_EQ(lamp->getConstantAttenuation(), 1.0F);
    EXPECT_EQ(lamp->getLinearAttenuation(), 2.0F);
    EXPECT_EQ(lamp->getFallOffAngle(), 60.0F);
    const scene::NodePtr node = m_scene->getNodeByID("n");
    EXPECT_EQ(node->getInstanceCamera(0), wide);
    EXPECT_EQ(node->getInstanceLight(0), lamp);
    ASSERT_EQ(m_scene->getCameraInstanceCount(), 1U);
    EXPECT_EQ(m_scene->getCameraInstanceAt(0)->getParentNode(), node);
    EXPECT_EQ(m_scene->getCameraInstanceAt(0)->getSID().substr(0, 3), "OID");
}

// The effect's diffuse goes through a sampler as version 1.4 writes it, its emission
// through one of version 1.5; the material gives its own shininess.
const char* const EFFECTS_AND_MATERIALS = R"(
<library_images><image id="wood"><init_from> wood.png </init_from></image>
<image id="glow"><init_from><ref>glow.png</ref></init_from></image></library_images>
<library_effects><effect id="fx"><newparam sid="shine"><float>5</float></newparam><profile_COMMON>
<newparam sid="surface"><surface><init_from>wood</init_from></surface></newparam>
<newparam sid="sampler"><sampler2D><source>surface</source></sampler2D></newparam>
<newparam sid="modern"><sampler2D><instance_image url="#glow"/></sampler2D></newparam>
<technique sid="common"><phong><diffuse><texture texture="sampler"/></diffuse>
<emission><texture texture="modern"/></emission><ambient><texture texture="wood"/></ambient>
<specular><color>0.50 1
 0 1</color></specular><shininess><param ref="shine"/></shininess>
<reflective><texture texture="lost"/></reflective><bogus><color>1 1 1 1</color></bogus>
</phong></technique></profile_COMMON><profile_CG><include url="wood.cgfx"/></profile_CG></effect>
</library_effects>
<library_materials><material id="plain"><instance_effect url="#fx"/></material>
<material id="mine"><instance_effect url="#fx"><setparam ref="shine"><float>9</float></setparam>
</instance_effect></material></library_materials>)";

TEST_F(ColladaReaderTest, MaterialsHaveTheParametersOfTheirEffect)
{
    const ReadResult result = readFine(EFFECTS_AND_MATERIALS + visualScene(""));
    EXPECT_THAT(result.warnings, ElementsAre(HasSubstr("<reflective> of <effect id=\"fx\">")));
    EXPECT_EQ(m_scene->getImageByID("wood")->getFilename(), "wood.png");
    EXPECT_EQ(m_scene->getImageByID("glow")->getFilename(), "glow.png");
    ASSERT_EQ(m_scene->getEffectLibrary().size(), 2U); // behind the default
    EXPECT_EQ(m_scene->getEffectLibrary()[1]->getFilename(), "wood.cgfx");
    const scene::MaterialPtr plain = m_scene->getMaterialWithID("plain");
    EXPECT_EQ(plain->getTechnique(), "common");
    EXPECT_EQ(plain->toString(), "Material ID: plain, Effect ID: fx\n"
                                 " Param 0: diffuse, texture, wood\n"
                                 " Param 1: emission, texture, glow\n"
                                 " Param 2: ambient, texture, wood\n"
                                 " Param 3: specular, color, 0.5 1 0 1\n"
                                 " Param 4: shininess, float, 5\n");
    const scene::MaterialPtr mine = m_scene->getMaterialWithID("mine");
    EXPECT_EQ(mine->getParameterByName("shininess")->getValue(), "9");
    EXPECT_EQ(mine->getParameterByName("shine")->getValue(), "9");
}

TEST_F(ColladaReaderTest, InstancesBindTheirMaterialsOrTheDefault)
{
    readFine(EFFECTS_AND_MATERIALS +
             quad("<triangles material=\"a\">" + VERTEX_INPUT + "</triangles>" + "<triangles>" +
                  VERTEX_INPUT + "</triangles>") +
             visualScene("<node id=\"n\"><instance_geometry url=\"#quad\"><bind_material>"
                         "<technique_common><instance_material symbol=\"a\" target=\"#mine\"/>"
                         "</technique_common></bind_material></instance_geometry>"
                         "<instance_geometry url=\"#quad\"/></node>"));
    const scene::NodePtr node = m_scene->getNodeByID("n");
    const auto& bound = node->getInstanceGeometry(0)->getMaterialMap();
    ASSERT_EQ(bound.size(), 1U);
    EXPECT_EQ(bound.at("a"), m_scene->getMaterialWithID("mine"));
    const auto& unbound = node->getInstanceGeometry(1)->getMaterialMap();
    ASSERT_EQ(unbound.size(), 2U);
    EXPECT_EQ(unbound.at("a"), m_scene->getMaterialWithID("defaultMaterial"));
    EXPECT_EQ(unbound.at("velmoran_material"), unbound.at("a"));
}

TEST_F(ColladaReaderTest, SkinsDeformTheGeometryAtTheEndOfTheChain)
{
    // The skin deforms a morph of the quad; weights come before joints in its records.
    const ReadResult result = readFine(
        "<library_controllers><controller id=\"skin\" name=\"Skin\"><skin source=\"#morph\">"
        "<bind_shape_matrix>1 0 0 5 0 1 0 6 0 0 1 7 0 0 0 1</bind_shape_matrix>"
        "<source id=\"joints\"><Name_array>hip knee</Name_array></source>" +
        source("w", 3, 1, "0.25 0.75 1") +
        "<joints><input semantic=\"JOINT\" source=\"#joints\"/></joints><vertex_weights "
        "count=\"4\">"
        "<input semantic=\"WEIGHT\" source=\"#w\" offset=\"0\"/>"
        "<input semantic=\"JOINT\" source=\"#joints\" offset=\"1\"/>"
        "<vcount>2 1 0 1</vcount><v>0 0 1 1 2 1 2 -1</v></vertex_weights></skin></controller>"
        "<controller id=\"morph\"><morph source=\"#quad\"/></controller></library_controllers>" +
        quad(triangleList("")) +
        visualScene("<node id=\"hip\"/><node id=\"n\"><instance_controller url=\"#skin\">"
                    "<skeleton> #hip </skeleton></instance_controller></node>"));
    EXPECT_THAT(result.warnings, ElementsAre(HasSubstr("no INV_BIND_MATRIX input"),
                                             HasSubstr("<morph> of <controller id=\"morph\">"),
                                             HasSubstr("1 of its 2 joints name no node")));
    const scene::InstanceControllerPtr instance =
        m_scene->getNodeByID("n")->getInstanceController(0);
    EXPECT_THAT(instance->getSkeletons(), ElementsAre("hip"));
    EXPECT_EQ(instance->getController(), m_scene->getControllerById("skin"));
    EXPECT_EQ(instance->getInstanceGeometry()->getGeometry(), getMesh("quad"));
    EXPECT_EQ(m_scene->getControllerById("morph")->getMorph()->getSourceGeometry(),
              getMesh("quad"));
    const scene::SkinPtr skin = instance->getController()->getSkin();
    EXPECT_EQ(skin->getSourceGeometry(), getMesh("quad"));
    EXPECT_EQ(skin->getBindShapeMatrix().col(3), Eigen::Vector4f(5, 6, 7, 1));
    EXPECT_EQ(skin->getJointsInput("JOINT"), skin->getVertexWeightsInput("JOINT"));
    EXPECT_EQ(skin->getVertexWeightsInput("WEIGHT")->getID(), "w");
    EXPECT_THAT(skin->getVCount(), ElementsAre(2, 1, 0, 1));
    EXPECT_THAT(skin->getV(), ElementsAre(0, 0, 1, 1, 1, 2, -1, 2));
}

TEST_F(ColladaReaderTest, AnimationsKeepTheirNestingAndChannels)
{
    const std::string channels = "<channel source=\"#sm\" target=\"n/t.X\"/>"
                                 "<channel source=\"#sm\" target=\"n/other(3)\"/>"
                                 "<channel source=\"#sm\" target=\"n/t.Q\"/>"
                                 "<channel source=\"#sm\" target=\"n/inner.X\"/>"
                                 "<channel source=\"#sm\" target=\"n/inner/t.X\"/>"
                                 "<channel source=\"#sm\" target=\"gone/t\"/>";
    const ReadResult result = readFine(
        "<library_animations><animation id=\"outer\" name=\"Outer\"><animation id=\"first\">" +
        source("times", 2, 1, "0 1.5") +
        "<source id=\"ways\"><Name_array>LINEAR STEP</Name_array></source><sampler id=\"sm\">"
        "<input semantic=\"INPUT\" source=\"#times\"/>"
        "<input semantic=\"INTERPOLATION\" source=\"#ways\"/></sampler></animation>"
        "<animation id=\"second\">" +
        channels + "</animation></animation></library_animations>" +
        visualScene("<node id=\"n\"><translate sid=\"t\">0 0 0</translate>"
                    "<node sid=\"inner\"/></node>"));
    EXPECT_THAT(result.warnings,
                ElementsAre(HasSubstr("<sampler id=\"sm\"> (line 2): it has no OUTPUT"),
                            HasSubstr("\"n/other(3)\" names no transformation of that node"),
                            HasSubstr("\"n/t.Q\" names a member"),
                            HasSubstr("\"n/inner.X\" names no transformation of that node"),
                            HasSubstr("\"n/inner/t.X\" leads on from that node"),
                            HasSubstr("\"gone/t\" names nothing")));
    ASSERT_EQ(m_scene->getAnimationsLibrary().size(), 1U);
    EXPECT_NE(m_scene->getAnimationManager(), nullptr);
    const scene::AnimationPtr outer = m_scene->getAnimationsLibrary()[0];
    EXPECT_EQ(outer->getName(), "Outer");
    ASSERT_EQ(outer->getChildAnimations().size(), 2U);
    const scene::AnimationPtr first = outer->getChildAnimations()[0];
    EXPECT_EQ(first->getStreams().size(), 2U);
    const scene::SamplerPtr sampler = first->getSamplerById("sm");
    EXPECT_EQ(sampler->getStreamBySemantic(scene::Sampler::INPUT), first->getStreamById("times"));
    EXPECT_THAT(sampler->getStreamBySemantic(scene::Sampler::INTERPOLATION)->getNameList(),
                ElementsAre("LINEAR", "STEP"));
    const auto targets = outer->getChildAnimations()[1]->getChannelArray();
    ASSERT_EQ(targets.size(), 6U);
    EXPECT_EQ(targets[0], scene::Animation::Channel(sampler, "n/t.X"));
}

TEST_F(ColladaReaderTest, InstancedNodesAreCopiedAndOnlyTheFirstKeepsItsIDs)
{
    // OID1 is an ID that the scene would generate.
    readFine("<library_nodes><node id=\"chair\" name=\"Chair\"><translate>1 2 3</translate>"
             "<node id=\"leg\"/></node></library_nodes>" +
             visualScene("<node id=\"OID1\"><instance_node url=\"#chair\"/>"
                         "<instance_node url=\"#chair\"/><instance_node url=\"#late\"/></node>"
                         "<node id=\"late\"/><node id=\"leg\"/>"));
    const scene::NodePtr row = m_scene->getNodeByID("OID1");
    ASSERT_EQ(row->getChildCount(), 3U);
    const scene::NodePtr first = row->getChildNode(0);
    const scene::NodePtr second = row->getChildNode(1);
    EXPECT_EQ(first->getID(), "chair");
    EXPECT_NE(second->getID(), "chair");
    EXPECT_EQ(second->getName(), "Chair");
    EXPECT_NE(first->getOriginalTransformations()[0], second->getOriginalTransformations()[0]);
    EXPECT_EQ(second->getTransformations(), first->getTransformations());
    EXPECT_EQ(first->getChildNode(0)->getID(), "leg");
    EXPECT_EQ(m_scene->getRoot()->getChildNode(2)->getID().substr(0, 4), "Node"); // repeated
    // What stands in the scene itself keeps its ID, even behind a copy of it.
    EXPECT_EQ(m_scene->getNodeByID("late")->getParent(), m_scene->getRoot());
    std::set<std::string> ids;
    for (const scene::NodePtr& node : m_scene->getNodeArray())
    {
        EXPECT_TRUE(ids.insert(node->getID()).second) << node->getID();
    }
}

TEST_F(ColladaReaderTest, ListenersFindTheNodesThatTheyHearOf)
{
    std::vector<std::string> heard;
    core::event::EventBase listener(boost::make_shared<core::event::EventManager>());
    m_scene->setEventManager(listener.getEventManager());
    listener.registerHandler(std::string("SceneTopologyUpdate"),
                             [&](core::event::Event event)
                             {
                                 const std::string id = event.getEventData().getArg(2);
                                 heard.push_back(m_scene->getNodeByID(id) ? id : "lost");
                             });
    EXPECT_FALSE(read(visualScene("<node id=\"a\"/><node><scale/></node>")).ok);
    EXPECT_THAT(heard, IsEmpty());
    readFine(visualScene("<node id=\"a\"><node id=\"b\"/></node><node id=\"c\"/>"));
    EXPECT_THAT(heard, ElementsAre("a", "b", "c"));
}

TEST_F(ColladaReaderTest, AnyDepthAndWidthIsRead)
{
    constexpr int SIZE = 100000;
    std::string wide;
    for (int i = 0; i < SIZE / 5; ++i)
    {
        wide += "<node id=\"n" + std::to_string(i) + "\"/>";
    }
    const auto nest = [](const std::string& element)
    { return repeat(SIZE, "<" + element + ">") + repeat(SIZE, "</" + element + ">"); };
    readFine("<library_animations>" + nest("animation") + "</library_animations>" +
             visualScene(nest("node") + wide));
    EXPECT_EQ(m_scene->getNodeArray().size(), SIZE + SIZE / 5 + 1U);
}
} // namespace velmoran::examples::test
