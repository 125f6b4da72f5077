#include "core/utils/Matrix.h"
#include "scene/graph/TransformationLookAt.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/graph/TransformationRotate.h"
#include "scene/graph/TransformationScale.h"
#include "scene/graph/TransformationSkew.h"
#include "scene/graph/TransformationTranslate.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace velmoran::scene;
using velmoran::core::utils::Matrix;
using Vector3 = ITransformation::Vector3;

namespace
{
void expectVector(const Vector3& actual, float x, float y, float z)
{
    EXPECT_NEAR(actual[0], x, 1e-6F);
    EXPECT_NEAR(actual[1], y, 1e-6F);
    EXPECT_NEAR(actual[2], z, 1e-6F);
}

// Column-major rotation about z.
Matrix turnAboutZ(float cosine, float sine)
{
    const float values[16] = {cosine, sine, 0, 0, -sine, cosine, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    return Matrix(values);
}
} // namespace

TEST(Transformations, ClonesHaveTheKindAndSidOfTheirOriginalAndCountAsChanged)
{
    const Vector3 v(1, 2, 3);
    const std::vector<ITransformationPtr> kinds = {
        boost::make_shared<TransformationLookAt>(v, v, v),
        boost::make_shared<TransformationMatrix>(),
        boost::make_shared<TransformationRotate>(v, 4.0F),
        boost::make_shared<TransformationScale>(v),
        boost::make_shared<TransformationSkew>(4.0F, v, v),
        boost::make_shared<TransformationTranslate>(v),
    };
    for (int type = 0; type < 6; ++type)
    {
        SCOPED_TRACE(type);
        const ITransformationPtr& original = kinds[static_cast<std::size_t>(type)];
        original->setSid("s");
        const ITransformationPtr copy = original->clone();
        EXPECT_EQ(copy->getType(), type);
        EXPECT_EQ(copy->getSid(), "s");
        EXPECT_TRUE(copy->updated());
        copy->setSid("other");
        EXPECT_EQ(original->getSid(), "s");
    }
}

TEST(Transformations, EverySetterIsSeenOnce)
{
    const Vector3 v(1, 2, 3);
    const Matrix identity;
    TransformationLookAt lookAt(v, v, v);
    TransformationMatrix matrix;
    TransformationRotate rotate;
    TransformationScale scale;
    TransformationSkew skew(0.0F, v, v);
    TransformationTranslate translate;
    const auto seenOnce = [](ITransformation& element, const auto& set)
    {
        element.updated();
        set();
        return element.updated() && !element.updated();
    };
    EXPECT_TRUE(seenOnce(lookAt, [&] { lookAt.setEyePosition(v); }));
    EXPECT_TRUE(seenOnce(lookAt, [&] { lookAt.setInterestPoint(v); }));
    EXPECT_TRUE(seenOnce(lookAt, [&] { lookAt.setUpAxis(v); }));
    EXPECT_TRUE(seenOnce(matrix, [&] { matrix.setMatrix(identity); }));
    EXPECT_TRUE(seenOnce(rotate, [&] { rotate.setRotationAxis(v); }));
    EXPECT_TRUE(seenOnce(rotate, [&] { rotate.setAngle(1.0F); }));
    EXPECT_TRUE(seenOnce(rotate, [&] { rotate.setFromMatrix(identity); }));
    EXPECT_TRUE(seenOnce(rotate, [&] { rotate.rotateBy(v, 1.0F); }));
    EXPECT_TRUE(seenOnce(scale, [&] { scale.setScaleX(7.0F); }));
    EXPECT_TRUE(seenOnce(scale, [&] { scale.setScaleY(8.0F); }));
    EXPECT_TRUE(seenOnce(scale, [&] { scale.setScaleZ(9.0F); }));
    expectVector(scale.getScale(), 7, 8, 9);
    expectVector({scale.getScaleX(), scale.getScaleY(), scale.getScaleZ()}, 7, 8, 9);
    EXPECT_TRUE(seenOnce(scale, [&] { scale.setScale(v); }));
    EXPECT_TRUE(seenOnce(skew, [&] { skew.setAngle(1.0F); }));
    EXPECT_TRUE(seenOnce(skew, [&] { skew.setRotation(v); }));
    EXPECT_TRUE(seenOnce(skew, [&] { skew.setTranslation(v); }));
    EXPECT_TRUE(seenOnce(translate, [&] { translate.setTranslation(v); }));
}

TEST(TransformationMatrix, IsReadByColumnAndRow)
{
    const float values[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const TransformationMatrix matrix(values);
    EXPECT_EQ(matrix.getValue(3, 1), 14.0F); // the translation's y, float 13
    EXPECT_EQ(matrix.getValue(4, 0), 0.0F);
    EXPECT_EQ(matrix.getValue(0, 4), 0.0F);
    EXPECT_EQ(matrix.getValue(0x40000000U, 0), 0.0F); // 4 * i would wrap to 0
}

TEST(TransformationRotate, NormalisesAxesThatAreSetAndKeepsThoseWithoutDirection)
{
    TransformationRotate rotate(Vector3(0, 0, 2), 10.0F);
    expectVector(rotate.getRotationAxis(), 0, 0, 2);
    rotate.setRotationAxis(Vector3(3, 0, 4));
    expectVector(rotate.getRotationAxis(), 0.6F, 0, 0.8F);
    rotate.setRotationAxis(0, -1e-30F, 0);
    expectVector(rotate.getRotationAxis(), 0, -1, 0);
    rotate.setRotationAxis(0, 0, 0);
    expectVector(rotate.getRotationAxis(), 0, 0, 0);
    rotate.setRotationAxis(INFINITY, 1, 0);
    EXPECT_EQ(rotate.getRotationAxis(), Vector3(INFINITY, 1, 0));
}

TEST(TransformationRotate, ReadsAMatrixWithTheAngleInRadians)
{
    const auto expectRead = [](const Matrix& matrix, const Vector3& axis, float angle)
    {
        TransformationRotate rotate;
        rotate.setFromMatrix(matrix);
        EXPECT_FLOAT_EQ(rotate.getAngle(), angle);
        expectVector(rotate.getRotationAxis(), axis[0], axis[1], axis[2]);
    };
    expectRead(Matrix(true), Vector3(1, 0, 0), 0.0F);
    expectRead(turnAboutZ(0, 1), Vector3(0, 0, 1), 1.5707964F);
    expectRead(turnAboutZ(1.0000001F, 0), Vector3(1, 0, 0), 0.0F); // cosine above 1
    expectRead(turnAboutZ(-1, std::sin(3.1415927F)), Vector3(0, 0, 1), 3.1415927F);
}

TEST(TransformationRotate, TurnsBackwardsAboutAnAxisOfTheTurnedFrame)
{
    TransformationRotate rotate(Vector3(0, 0, 1), 90.0F);
    rotate.rotateBy(Vector3(1, 0, 0), 90.0F);
    // z by 90 times x by -90: w, x, y, z = 0.5, -0.5, -0.5, 0.5
    const float third = 1.0F / std::sqrt(3.0F);
    expectVector(rotate.getRotationAxis(), -third, -third, third);
    EXPECT_NEAR(rotate.getAngle(), 120.0F, 1e-4F);

    rotate.rotateBy(Vector3(1, 0, 0), -90.0F);
    expectVector(rotate.getRotationAxis(), 0, 0, 1);
    EXPECT_NEAR(rotate.getAngle(), 90.0F, 1e-4F);
}
