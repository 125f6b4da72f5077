#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsRigidBody.h"
#include "scene/physics/PhysicsRigidConstraint.h"
#include "scene/physics/PhysicsScene.h"
#include "scene/physics/PhysicsShape.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

using namespace velmoran::scene;

TEST(Physics, RecordsStartWithTheirDefaults)
{
    const PhysicsShape shape;
    EXPECT_EQ(shape.getMass(), -1.0f);
    EXPECT_EQ(shape.getDensity(), -1.0f);
    EXPECT_EQ(shape.getRotation().axis(), Eigen::Vector3f(0.0f, 0.0f, 0.0f));
    EXPECT_EQ(shape.getRotation().angle(), 1.0f);

    const PhysicsScene scene("s", "n");
    EXPECT_EQ(scene.getGravity(), Eigen::Vector3f(0.0f, 0.0f, -9.81f));
    EXPECT_EQ(scene.getTimeStep(), 0.016666668f);
}

TEST(Physics, LimitsCanBeSetFromEachOther)
{
    PhysicsRigidConstraint constraint("c", "n", true, false);
    const Eigen::Vector3f low(-1.0f, -2.0f, -3.0f);
    const Eigen::Vector3f high(4.0f, 5.0f, 6.0f);
    constraint.setLinearlimits(low, high, low, high);
    constraint.setLinearlimits(high, constraint.getLinearTranslationMin(), low, high);
    EXPECT_EQ(constraint.getLinearTranslationMin(), high);
    EXPECT_EQ(constraint.getLinearTranslationMax(), low);
    EXPECT_EQ(constraint.getLinearRotationMin(), low);
    EXPECT_EQ(constraint.getLinearRotationMax(), high);
}

TEST(Physics, ModelFindsTheFirstMatchAmongEmptyHandles)
{
    const auto body = boost::make_shared<PhysicsRigidBody>("b", "", true);
    const auto constraint = boost::make_shared<PhysicsRigidConstraint>("sid", "b", true, true);
    PhysicsModel model("m", "n");
    model.setRigidBodyLibrary(
        {PhysicsRigidBodyPtr(), body, boost::make_shared<PhysicsRigidBody>(*body)});
    model.setRigidConstraintLibrary({PhysicsRigidConstraintPtr(), constraint});
    EXPECT_EQ(model.getRigidBodyById("b"), body);
    EXPECT_FALSE(model.getRigidBodyById("c"));
    EXPECT_EQ(model.getRigidConstraintById("sid"), constraint);
    EXPECT_FALSE(model.getRigidConstraintById("b"));
}
