#include "tests/examples/ColladaText.h"

#include "examples/collada/AnalyticShape.h"
#include "scene/physics/PhysicsAttachment.h"
#include "scene/physics/PhysicsInstanceModel.h"
#include "scene/physics/PhysicsInstanceRigidBody.h"
#include "scene/physics/PhysicsInstanceRigidConstraint.h"
#include "scene/physics/PhysicsMaterial.h"
#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsRigidBody.h"
#include "scene/physics/PhysicsRigidConstraint.h"
#include "scene/physics/PhysicsScene.h"
#include "scene/physics/PhysicsShape.h"

#include <limits>

namespace velmoran::examples::test
{
namespace
{
const std::string MATERIALS =
    "<library_physics_materials><physics_material id=\"ice\" name=\"Ice\"><technique_common>"
    "<dynamic_friction>0.25</dynamic_friction><restitution>0.75</restitution>"
    "<static_friction>0.5</static_friction></technique_common></physics_material>"
    "</library_physics_materials>";

std::string model(const std::string& content)
{
    return "<library_physics_models><physics_model id=\"model\" name=\"Model\">" + content +
           "</physics_model></library_physics_models>";
}

std::string body(const std::string& sid, const std::string& content)
{
    return "<rigid_body sid=\"" + sid + "\"><technique_common>" + content +
           "</technique_common></rigid_body>";
}

/// A physics scene with an instance of "model", which `<scene>` instances.
std::string physicsScene(const std::string& attributes, const std::string& instances,
                         const std::string& settings = "")
{
    return "<library_physics_scenes><physics_scene id=\"world\" name=\"World\">"
           "<instance_physics_model url=\"#model\"" +
           attributes + ">" + instances + "</instance_physics_model><technique_common>" + settings +
           "</technique_common></physics_scene><physics_scene id=\"unused\"/>"
           "</library_physics_scenes><scene><instance_physics_scene url=\"#world\"/></scene>";
}

class ColladaPhysicsTest : public ColladaTest
{
protected:
    scene::PhysicsShapePtr getShape(const std::string& sid, std::size_t index)
    {
        const scene::PhysicsRigidBodyPtr body =
            m_scene->getPhysicsModelById("model")->getRigidBodyById(sid);
        return body->getShapesLibrary().at(index);
    }
};
} // namespace

TEST_F(ColladaPhysicsTest, BodiesHaveTheirMaterialsAndShapes)
{
    const ReadResult result = readFine(
        MATERIALS +
        model("<rigid_body sid=\"rock\" name=\"Rock\"><technique_common>"
              "<dynamic>false</dynamic><mass>2.5</mass>"
              "<instance_physics_material url=\"#ice\"/>"
              "<shape><hollow>true</hollow><mass>1.5</mass><density>3</density>"
              "<physics_material><technique_common><restitution>1</restitution></technique_common>"
              "</physics_material><instance_geometry url=\"#quad\"/></shape>"
              "<shape><box><half_extents>1 2 3</half_extents></box><translate>1 0 0</translate>"
              "<rotate>0 0 2 270</rotate></shape>"
              "<shape><instance_physics_material url=\"#ice\"/><rotate>0 0 1 90</rotate>"
              "<translate>1 0 0</translate><rotate>1 0 0 90</rotate>"
              "<capsule><radius>1 2</radius><height>3</height></capsule></shape>"
              "</technique_common></rigid_body><rigid_body sid=\"dust\"/>") +
        quad("") + visualScene(""));
    EXPECT_THAT(result.warnings, IsEmpty());
    const scene::PhysicsMaterialPtr ice = m_scene->getPhysicsMaterialById("ice");
    ASSERT_TRUE(ice);
    EXPECT_EQ(m_scene->getPhysicsMaterialLibrary().size(), 1U) << "inline ones are not listed";
    EXPECT_EQ(ice->getName(), "Ice");
    EXPECT_EQ(ice->getRestitution(), 0.75F);
    EXPECT_EQ(ice->getStaticFriction(), 0.5F);
    EXPECT_EQ(ice->getDynamicFriction(), 0.25F);

    const scene::PhysicsModelPtr model = m_scene->getPhysicsModelById("model");
    EXPECT_EQ(model->getName(), "Model");
    const scene::PhysicsRigidBodyPtr rock = model->getRigidBodyById("rock");
    EXPECT_EQ(rock->getName(), "Rock");
    EXPECT_FALSE(rock->isDynamic());
    EXPECT_EQ(rock->getMass(), 2.5F);
    EXPECT_EQ(rock->getPhysicsMaterial(), ice);
    EXPECT_EQ(rock->getShapeCount(), 3U);
    const scene::PhysicsRigidBodyPtr dust = model->getRigidBodyById("dust");
    EXPECT_TRUE(dust->isDynamic() && dust->getMass() == 0.0F && !dust->getPhysicsMaterial());

    const scene::PhysicsShapePtr meshed = getShape("rock", 0);
    EXPECT_TRUE(meshed->getHollow() && meshed->getMass() == 1.5F && meshed->getDensity() == 3.0F);
    EXPECT_EQ(meshed->getInstanceGeometry()->getGeometry(), getMesh("quad"));
    EXPECT_EQ(meshed->getPhysicsMaterial()->getRestitution(), 1.0F);
    EXPECT_TRUE(meshed->getRotation().toRotationMatrix().isIdentity());
    EXPECT_FALSE(meshed->getShape());

    const scene::PhysicsShapePtr box = getShape("rock", 1);
    EXPECT_EQ(box->getMass(), -1.0F);
    EXPECT_EQ(box->getRotation().axis(), Eigen::Vector3f::UnitZ());
    EXPECT_FLOAT_EQ(box->getRotation().angle(), 4.712389F);
    EXPECT_EQ(box->getTranslation().vector(), Eigen::Vector3f::UnitX());
    const auto analytic = boost::dynamic_pointer_cast<AnalyticShape>(box->getShape());
    ASSERT_TRUE(analytic);
    EXPECT_EQ(analytic->kind, "box");
    EXPECT_THAT(analytic->measures["half_extents"], ElementsAre(1, 2, 3));

    // What is turned first turns what follows: x to y, then y to y and z to x.
    const scene::PhysicsShapePtr turned = getShape("rock", 2);
    EXPECT_EQ(turned->getPhysicsMaterial(), ice);
    EXPECT_TRUE(turned->getTranslation().vector().isApprox(Eigen::Vector3f::UnitY(), 1e-6F));
    const Eigen::Matrix3f turn = turned->getRotation().toRotationMatrix();
    EXPECT_TRUE(turn.col(0).isApprox(Eigen::Vector3f::UnitY(), 1e-6F)) << turn;
    EXPECT_TRUE(turn.col(1).isApprox(Eigen::Vector3f::UnitZ(), 1e-6F)) << turn;
}

TEST_F(ColladaPhysicsTest, ConstraintsHoldBodiesWithinLimits)
{
    const ReadResult result = readFine(
        model("<rigid_constraint sid=\"hinge\" name=\"Hinge\">"
              "<ref_attachment rigid_body=\"#frame-id\"><translate>1 2 3</translate>"
              "</ref_attachment><attachment rigid_body=\"./door\"><rotate>0 1 0 90</rotate>"
              "</attachment><technique_common><enabled>0</enabled>"
              "<interpenetrate>true</interpenetrate><limits><swing_cone_and_twist>"
              "<min>-90 0 -INF</min><max>90 0 INF</max></swing_cone_and_twist><linear>"
              "<min>-1 -2 -3</min><max>1 2 3</max></linear></limits><spring/></technique_common>"
              "</rigid_constraint><rigid_constraint sid=\"free\"><ref_attachment rigid_body=\"\"/>"
              "<attachment rigid_body=\"#n\"/></rigid_constraint>"
              "<rigid_constraint sid=\"lost\"><attachment rigid_body=\"gone\"/></rigid_constraint>"
              "<rigid_body sid=\"frame\" id=\"frame-id\"/><rigid_body sid=\"door\"/>") +
        visualScene("<node id=\"n\"/>"));
    EXPECT_THAT(result.warnings, ElementsAre(HasSubstr("<spring> of <physics_model id=\"model\">"),
                                             HasSubstr("\"#n\" names no body"),
                                             HasSubstr("\"gone\" names no body")));
    const scene::PhysicsModelPtr model = m_scene->getPhysicsModelById("model");
    const scene::PhysicsRigidConstraintPtr hinge = model->getRigidConstraintById("hinge");
    ASSERT_TRUE(hinge);
    EXPECT_EQ(hinge->getName(), "Hinge");
    EXPECT_FALSE(hinge->isEnabled());
    EXPECT_TRUE(hinge->allowInterpenetrate());
    EXPECT_EQ(hinge->getRefAttachment()->getAttachment(), model->getRigidBodyById("frame"));
    EXPECT_EQ(hinge->getRefAttachment()->getTranslate().vector(), Eigen::Vector3f(1, 2, 3));
    EXPECT_EQ(hinge->getAttachment()->getAttachment(), model->getRigidBodyById("door"));
    EXPECT_FLOAT_EQ(hinge->getAttachment()->getRotation().angle(), 1.5707964F);
    constexpr float INF = std::numeric_limits<float>::infinity();
    EXPECT_EQ(hinge->getLinearTranslationMin(), Eigen::Vector3f(-1, -2, -3));
    EXPECT_EQ(hinge->getLinearTranslationMax(), Eigen::Vector3f(1, 2, 3));
    EXPECT_EQ(hinge->getLinearRotationMin(), Eigen::Vector3f(-90, 0, -INF));
    EXPECT_EQ(hinge->getLinearRotationMax(), Eigen::Vector3f(90, 0, INF));

    const scene::PhysicsRigidConstraintPtr free = model->getRigidConstraintById("free");
    EXPECT_TRUE(free->isEnabled() && !free->allowInterpenetrate());
    EXPECT_FALSE(free->getAttachment()->getAttachment());
    EXPECT_EQ(free->getLinearRotationMax(), Eigen::Vector3f(0, 0, 0));
    EXPECT_FALSE(model->getRigidConstraintById("lost")->getRefAttachment());
}

TEST_F(ColladaPhysicsTest, ScenesInstanceModelsOnTheirNodes)
{
    const std::string parts = model(body("b", "") + "<rigid_constraint sid=\"c\"/>");
    const std::string instances =
        "<instance_rigid_body body=\"b\" target=\"#n\"/>"
        "<instance_rigid_body body=\"b\" target=\"#stored\"><technique_common>"
        "<velocity>1 0 0</velocity></technique_common></instance_rigid_body>"
        "<instance_rigid_body body=\"gone\" target=\"#n\"/>"
        "<instance_rigid_constraint constraint=\"c\" sid=\"s\" name=\"N\"/>"
        "<instance_rigid_constraint constraint=\"gone\"/>";
    const ReadResult result =
        readFine(physicsScene(" parent=\"#n\"", instances,
                              "<gravity>0 -9.81 0</gravity><time_step>0.02</time_step>") +
                 parts +
                 "<library_nodes><node id=\"stored\"/></library_nodes>"
                 "<library_visual_scenes><visual_scene id=\"vs\"><node id=\"n\"/></visual_scene>"
                 "</library_visual_scenes>");
    EXPECT_THAT(result.warnings, ElementsAre(HasSubstr("values of its own are left out"),
                                             HasSubstr("\"gone\" names no body"),
                                             HasSubstr("\"gone\" names no constraint"),
                                             HasSubstr("the node \"stored\" is not in the scene")));
    ASSERT_EQ(m_scene->getPhysicsSceneLibrary().size(), 2U);
    const scene::PhysicsScenePtr world = m_scene->getPhysicsSceneById("world");
    EXPECT_THAT(m_scene->getInstancedPhysicsScenes(), ElementsAre(world));
    EXPECT_EQ(world->getName(), "World");
    EXPECT_EQ(world->getGravity(), Eigen::Vector3f(0, -9.81F, 0));
    EXPECT_EQ(world->getTimeStep(), 0.02F);
    EXPECT_EQ(m_scene->getPhysicsSceneById("unused")->getGravity(), Eigen::Vector3f(0, 0, -9.81F));
    ASSERT_EQ(world->getInstancedModels().size(), 1U);
    const scene::PhysicsInstanceModelPtr instance = world->getInstancedModels()[0];
    const scene::PhysicsModelPtr model = m_scene->getPhysicsModelById("model");
    EXPECT_EQ(instance->getPhysicsModel(), model);
    EXPECT_EQ(instance->getNode(), m_scene->getNodeByID("n"));
    ASSERT_EQ(instance->getInstancedRigidBodies().size(), 2U);
    EXPECT_EQ(instance->getInstancedRigidBodies()[0]->getBody(), model->getRigidBodyById("b"));
    EXPECT_EQ(instance->getInstancedRigidBodies()[0]->getTarget(), m_scene->getNodeByID("n"));
    EXPECT_FALSE(instance->getInstancedRigidBodies()[1]->getTarget());
    ASSERT_EQ(instance->getInstancedRigidConstraint().size(), 1U);
    const auto constraint = instance->getInstancedRigidConstraint()[0];
    EXPECT_EQ(constraint->getConstraint(), model->getRigidConstraintById("c"));
    EXPECT_EQ(constraint->getSid() + constraint->getName(), "sN");

    readFine(visualScene(""));
    EXPECT_THAT(m_scene->getPhysicsModelLibrary(), IsEmpty()) << "another document's";
    EXPECT_THAT(m_scene->getInstancedPhysicsScenes(), IsEmpty());
}

TEST_F(ColladaPhysicsTest, WrongNumbersAndReferencesThatLeadNowhereAreRefused)
{
    const std::string empty = model("");
    const std::pair<std::string, const char*> rows[] = {
        {model(body("b", "<dynamic>maybe</dynamic>")), "\"maybe\" is not a boolean"},
        {model(body("b", "<mass>1 2</mass>")), "2 numbers instead of 1"},
        {model(body("b", "<shape><sphere><radius>big</radius></sphere></shape>")), "not a number"},
        {model(body("b", "<instance_physics_material url=\"#gone\"/>")), "<physics_material>"},
        {model(body("b", "<shape><instance_geometry url=\"#gone\"/></shape>")), "<geometry>"},
        {model("<rigid_constraint><attachment rigid_body=\"#gone\"/></rigid_constraint>"),
         "<rigid_body> or <node>"},
        {physicsScene("", ""), "<physics_model>"},
        {empty + physicsScene(" parent=\"#gone\"", ""), "<node>"},
        {empty + physicsScene("", "<instance_rigid_body body=\"b\" target=\"#gone\"/>"), "<node>"},
        {empty + physicsScene("", "<instance_rigid_body body=\"b\"/>"), "target is missing"},
        {empty + physicsScene("", "", "<gravity>0 0</gravity>"), "2 numbers instead of 3"},
        {"<scene><instance_physics_scene url=\"#gone\"/></scene>", "<physics_scene>"},
    };
    for (const auto& [text, reason] : rows)
    {
        SCOPED_TRACE(text);
        const ReadResult result = read(text);
        EXPECT_FALSE(result.ok);
        EXPECT_THAT(result.error, HasSubstr(reason));
        EXPECT_THAT(m_scene->getPhysicsModelLibrary(), IsEmpty());
    }
}
} // namespace velmoran::examples::test
