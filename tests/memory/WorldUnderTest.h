#pragma once

#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/graph/TransformationTranslate.h"
#include "scene/manager/ISceneController.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"
#include "tests/memory/FailingMemory.h"
#include "tests/memory/SceneText.h"
#include "tests/scene/AvatarUnderTest.h"
#include "tests/scene/geometry/GeometryBuilders.h"

#include <new>

namespace velmoran::scene
{
inline ITransformationPtr makeTranslation(float x)
{
    return boost::make_shared<TransformationTranslate>(ITransformation::Vector3(x, 0.0F, 0.0F));
}

/// A small scene with something of each kind: an avatar, and below the root "arm", which
/// holds the mesh "plate" of two triangles with normals in slots of their own, and "hand".
/// Nothing runs beside the test, nobody listens.
struct WorldUnderTest : AvatarUnderTest
{
    /// `prefix` begins the identifiers that do not clash with another such scene.
    explicit WorldUnderTest(const std::string& prefix = "") : AvatarUnderTest(1.0F)
    {
        manager->stop();
        manager->setUpAxis(Z_UP);
        addPlate(prefix);
        arm = addNode("root", "arm");
        hand = addNode("arm", prefix + "hand");
        hand->setSID("OID2" + prefix);
        arm->addTransformation(makeTranslation(1.0F));
        arm->addToLayer(prefix + "tools");
        manager->addImage(boost::make_shared<Image>("image", prefix + "i.png", ""));
        manager->addImage(boost::make_shared<Image>(prefix + "OID3", "j.png", ""));
        manager->addEffect(boost::make_shared<Effect>("effect", prefix + "e.fx", ""));
        material = boost::make_shared<Material>("material", "effect");
        material->addMaterialParameter(
            boost::make_shared<MaterialParameter>("map", "texture", "image"));
        manager->addMaterial(material);
        instance = boost::make_shared<InstanceGeometry>(plate, material);
        arm->addInstanceGeometry(instance);
        addAnimation();
    }

    /// A library that lets a mesh go leaves its primitives to whoever else holds it.
    ~WorldUnderTest() { plate->clearPrimitives(); }

    WorldUnderTest(const WorldUnderTest&) = delete;
    WorldUnderTest& operator=(const WorldUnderTest&) = delete;

    void addPlate(const std::string& prefix)
    {
        // The side of a roof and a triangle on the other one.
        const StreamPtr positions =
            makeStream("positions", 3,
                       {0.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F, 0.0F, 1.0F, 1.0F, 1.0F, 1.0F, 0.0F});
        const StreamPtr normals = makeStream("normals", 3, {0.0F, 0.0F, 1.0F});
        plate->addStream(positions);
        plate->addStream(normals);
        plate->addVerticesMapping(StreamMapping(POSITION, positions, 0));
        triangles = boost::make_shared<TriangleMeshPrimitive>(
            plate,
            std::vector<StreamMapping>{StreamMapping(VERTEX, makeStream("v", 3, {}), 0),
                                       StreamMapping(NORMAL, normals, 1)},
            std::vector<unsigned int>{0, 0, 1, 0, 2, 0, 1, 0, 3, 0, 2, 0});
        plate->addPrimitive(triangles);
        manager->getGeometryManager()->addGeometry(plate);
        const MeshPtr own = boost::make_shared<Mesh>(prefix + "own", "");
        manager->getGeometryManager()->addGeometry(own);
    }

    void addAnimation()
    {
        animation = boost::make_shared<Animation>("OID4", "");
        manager->setAnimationsLibrary({animation});
        player = manager->getAnimationManager();
        player->setAnimation(animation);
        player->insertKeyframe(0.0F);
        player->insertKeyframe(1.0F);
        player->resume();
    }

    std::string text(Objects objects = Objects::BY_ADDRESS) const
    {
        return toText(*manager, objects);
    }

    /// The next identifiers that the scene makes.
    std::string nextIDs() const
    {
        std::string ids;
        for (int i = 0; i < 8; ++i)
        {
            ids += manager->generateID() + " ";
        }
        return ids;
    }

    MeshPtr plate = boost::make_shared<Mesh>("plate", "");
    TriangleMeshPrimitivePtr triangles;
    NodePtr arm;
    NodePtr hand;
    MaterialPtr material;
    InstanceGeometryPtr instance;
    AnimationPtr animation;
    AnimationManagerPtr player;
};

/// Lets each allocation of `operation(world)` fail in turn: alone, and with all after it.
/// The operation must throw `std::bad_alloc` and leave the scene as it was, so that it
/// does its work the next time, or do it in spite of that.
template <typename World = WorldUnderTest, typename Operation>
void expectAllOrNothing(Operation operation)
{
    World undisturbed;
    undisturbed.text();
    operation(undisturbed);
    const std::string done = undisturbed.text(Objects::BY_NUMBER) + undisturbed.nextIDs();

    bool isReached = true;
    for (long number = 1; isReached && !::testing::Test::HasFailure(); ++number)
    {
        for (const auto extent : {FailingMemory::ONE, FailingMemory::THE_REST})
        {
            if (number > 60 && number % 2 == (extent == FailingMemory::ONE ? 0 : 1))
            {
                continue; // long operations do much the same again and again
            }
            SCOPED_TRACE("allocation " + std::to_string(number) +
                         (extent == FailingMemory::ONE ? "" : " and all after it"));
            World world;
            const std::string before = world.text();
            bool isThrown = false;
            {
                const FailingMemory failing(number, extent);
                try
                {
                    operation(world);
                }
                catch (const std::bad_alloc&)
                {
                    isThrown = true;
                }
                isReached = failing.wasReached();
            }
            if (isThrown)
            {
                ASSERT_EQ(world.text(), before);
                if (number % 8 != 0) // trying again takes as long as all the rest
                {
                    continue;
                }
                operation(world);
            }
            ASSERT_EQ(world.text(Objects::BY_NUMBER) + world.nextIDs(), done);
        }
    }
}
} // namespace velmoran::scene
