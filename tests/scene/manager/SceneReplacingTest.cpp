#include "scene/deform/Morph.h"
#include "scene/material/Material.h"
#include "tests/scene/AvatarUnderTest.h"
#include "tests/scene/geometry/GeometryBuilders.h"

namespace velmoran::scene
{
TEST(SceneReplacing, PutsAStreamWhereverTheOtherOneWas)
{
    AvatarUnderTest avatar;
    const StreamPtr old = avatar.vertices;
    const StreamPtr stream = makeFloats("new", 3, {1.0F, 2.0F, 3.0F});
    const StreamPtr weights = avatar.skin->getVertexWeightsInput("WEIGHT");
    const IMeshPrimitivePtr primitive = addPrimitive(
        avatar.mesh, "skin", {StreamMapping(VERTEX, old, 0), StreamMapping(NORMAL, weights, 1)});
    // A mesh that only a node uses, and a skin that only an instance uses.
    const MeshPtr lone = boost::make_shared<Mesh>("lone", "");
    lone->setStreams({stream, old, old});
    const SkinPtr loneSkin = boost::make_shared<Skin>(lone);
    loneSkin->setStreams({old});
    loneSkin->setJointsInput("JOINT", old->getID());
    loneSkin->setVertexWeightsInput("WEIGHT", old->getID());
    const ControllerPtr controller = boost::make_shared<Controller>("lone", "");
    controller->setSkin(loneSkin);
    avatar.node->addInstanceController(
        boost::make_shared<InstanceController>(InstanceGeometryPtr(), controller));

    avatar.manager->replaceSharedStreams(StreamPtr(), stream);
    avatar.manager->replaceSharedStreams(old, StreamPtr());
    EXPECT_THAT(avatar.mesh->getStreams(), ElementsAre(old));
    avatar.events.take();
    avatar.manager->replaceSharedStreams(old, stream);
    EXPECT_THAT(avatar.events.log, IsEmpty());
    EXPECT_THAT(avatar.mesh->getStreams(), ElementsAre(stream));
    EXPECT_EQ(avatar.mesh->getVertices().front().getStream(), stream);
    EXPECT_EQ(primitive->getStreamMapping()[0].getStream(), stream);
    EXPECT_EQ(primitive->getStreamMapping()[1].getStream(), weights);
    EXPECT_THAT(lone->getStreams(), ElementsAre(stream));
    EXPECT_THAT(loneSkin->getStreams(), ElementsAre(stream));
    EXPECT_EQ(loneSkin->getJointsInput("JOINT"), stream);
    EXPECT_EQ(loneSkin->getVertexWeightsInput("WEIGHT"), stream);
    EXPECT_EQ(avatar.skin->getVertexWeightsInput("WEIGHT"), weights);
}

TEST(SceneReplacing, LetsTheNewGeometryBeUsedForTheOldOne)
{
    AvatarUnderTest avatar;
    const auto cloth = boost::make_shared<Material>("cloth", "effect");
    const auto leather = boost::make_shared<Material>("leather", "effect");
    const auto instance = boost::make_shared<InstanceGeometry>(
        avatar.mesh, InstanceGeometry::MaterialMap{{"shirt", cloth}, {"shoes", leather}});
    const auto bystander =
        boost::make_shared<InstanceGeometry>(boost::make_shared<Mesh>("bystander", ""),
                                             InstanceGeometry::MaterialMap{{"shoes", leather}});
    avatar.addNode("human-template", "statue")->addInstanceGeometry(instance);
    avatar.node->addInstanceGeometry(bystander);
    const auto morph = boost::make_shared<Morph>(avatar.mesh);
    avatar.controller->setMorph(morph);
    addPrimitive(avatar.mesh, "shirt");

    const MeshPtr robe = makeMeshOf("shirt", "robe");
    addPrimitive(robe, "belt");
    avatar.events.take();
    avatar.manager->replaceGeometry("unknown", robe);
    avatar.manager->replaceGeometry("human-template-lib", IGeometryPtr());
    EXPECT_THAT(avatar.events.log, IsEmpty());
    EXPECT_EQ(instance->getGeometry(), avatar.mesh);

    const boost::weak_ptr<Mesh> old = avatar.mesh;
    avatar.mesh = robe;
    avatar.manager->replaceGeometry("human-template-lib", robe);
    EXPECT_THAT(avatar.events.log,
                ElementsAre("GeometryTopologyUpdate:human-template-lib", "SyncScene"));
    EXPECT_EQ(avatar.manager->getGeometryManager()->getGeometry("human-template-lib"), robe);
    EXPECT_EQ(robe->getID(), "human-template-lib");
    EXPECT_EQ(instance->getGeometry(), robe);
    EXPECT_THAT(instance->getMaterialMap(),
                ElementsAre(Pair("belt", MaterialPtr()), Pair("shirt", cloth)));
    EXPECT_THAT(instance->getMaterialList(), ElementsAre(MaterialPtr(), cloth));
    EXPECT_EQ(avatar.node->getInstanceController(0)->getInstanceGeometry()->getGeometry(), robe);
    EXPECT_EQ(avatar.skin->getSourceGeometry(), robe);
    EXPECT_EQ(morph->getSourceGeometry(), robe);
    EXPECT_EQ(bystander->getMaterialMap().size(), 1U);
    EXPECT_TRUE(old.expired()); // though its primitive held it
}
} // namespace velmoran::scene
