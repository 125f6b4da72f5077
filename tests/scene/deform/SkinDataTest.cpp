#include "scene/deform/Skin.h"
#include "scene/geometry/Stream.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <string>
#include <vector>

using namespace velmoran::scene;
using ::testing::ElementsAre;

namespace
{
StreamPtr makeSkinStream(const std::string& id)
{
    return boost::make_shared<Stream>(id, 1, true);
}

// Joint names that joints and vertex weights share, matrices and weights.
class SkinData : public ::testing::Test
{
protected:
    StreamPtr names = makeSkinStream("names");
    StreamPtr matrices = makeSkinStream("matrices");
    StreamPtr weights = makeSkinStream("weights");
    StreamPtr none;
    Skin skin{IGeometryPtr()};

    SkinData()
    {
        skin.setStreams({names, none, matrices, weights});
        skin.setJointsInput("JOINT", "names");
        skin.setJointsInput("INV_BIND_MATRIX", "matrices");
        skin.setVertexWeightsInput("JOINT", "names");
        skin.setVertexWeightsInput("WEIGHT", "weights");
    }

    // Joints: names and matrices; vertex weights: names and weights.
    std::vector<StreamPtr> inputs() const
    {
        return {skin.getJointsInput("JOINT"), skin.getJointsInput("INV_BIND_MATRIX"),
                skin.getVertexWeightsInput("JOINT"), skin.getVertexWeightsInput("WEIGHT")};
    }
};
} // namespace

TEST_F(SkinData, InputsAreChosenAmongTheStreamsByID)
{
    EXPECT_THAT(skin.getStreams(), ElementsAre(names, matrices, weights));
    EXPECT_THAT(inputs(), ElementsAre(names, matrices, names, weights));
    skin.setJointsInput("JOINT", "no such stream");
    skin.setJointsInput("WEIGHT", "matrices");
    EXPECT_THAT(inputs(), ElementsAre(names, matrices, names, weights));
    EXPECT_FALSE(skin.getJointsInput("WEIGHT"));
}

TEST_F(SkinData, AReplacedStreamIsReplacedWhereverItStands)
{
    const StreamPtr newWeights = makeSkinStream("new weights");
    const StreamPtr newNames = makeSkinStream("new names");
    skin.replaceVertexWeightsStream("WEIGHT", newWeights);
    EXPECT_THAT(inputs(), ElementsAre(names, matrices, names, newWeights));
    // The joints input uses the same stream, which then is none of the skin's any more.
    skin.replaceVertexWeightsStream("JOINT", newNames);
    EXPECT_THAT(inputs(), ElementsAre(newNames, matrices, newNames, newWeights));
    EXPECT_THAT(skin.getStreams(), ElementsAre(newNames, matrices, newWeights));

    skin.replaceVertexWeightsStream("JOINT", none);
    skin.replaceVertexWeightsStream("INV_BIND_MATRIX", weights);
    EXPECT_THAT(skin.getStreams(), ElementsAre(newNames, matrices, newWeights));
}

TEST_F(SkinData, InputsStayAmongTheStreamsWhenTheseAreReplaced)
{
    const StreamPtr twin = names->clone();
    skin.setStreams({twin, weights});
    EXPECT_THAT(inputs(), ElementsAre(twin, none, twin, weights));
    skin.setStreams({matrices});
    skin.replaceVertexWeightsStream("WEIGHT", weights); // no longer has anything to replace
    EXPECT_THAT(inputs(), ElementsAre(none, none, none, none));
    EXPECT_THAT(skin.getStreams(), ElementsAre(matrices));
}

// Weights by index: 0.6, 0.4, 1.0, 0.25. Influences of the vertices: joints 1 and 2; joint 2;
// none; joint 5 twice.
class SkinInfluences : public SkinData
{
protected:
    SkinInfluences()
    {
        weights->setData({0.6F, 0.4F, 1.0F, 0.25F});
        skin.setVCount({2, 1, 0, 2});
        skin.setV({1, 0, 2, 1, 2, 2, 5, 3, 5, 1});
    }

    void expectInfluences(int vertex, const std::vector<int>& wanted,
                          const std::vector<float>& wantedWeights) const
    {
        std::vector<int> joints = {7};
        std::vector<float> values = {0.5F};
        skin.getVertexJointsAndWeights(vertex, joints, values);
        joints.erase(joints.begin()); // lists are appended to
        values.erase(values.begin());
        EXPECT_EQ(joints, wanted);
        EXPECT_EQ(values, wantedWeights);
    }
};

TEST_F(SkinInfluences, AreReadInOrderForOneVertex)
{
    expectInfluences(0, {1, 2}, {0.6F, 0.4F});
    expectInfluences(1, {2}, {1.0F});
    expectInfluences(2, {}, {});
    expectInfluences(3, {5, 5}, {0.25F, 0.4F});
    expectInfluences(4, {}, {});
    expectInfluences(-1, {}, {});
}

TEST_F(SkinInfluences, HalfwayBetweenTwoVerticesAreTheMeanOfBoth)
{
    std::vector<int> joints;
    std::vector<float> values;
    skin.calculateNewJointsAndWeights(1, 0, joints, values);
    EXPECT_THAT(joints, ElementsAre(1, 2));
    EXPECT_THAT(values, ElementsAre(0.3F, 0.7F));
    skin.calculateNewJointsAndWeights(2, 3, joints, values);
    EXPECT_THAT(joints, ElementsAre(1, 2, 5));
    EXPECT_FLOAT_EQ(values[2], 0.325F); // half of 0.25 + 0.4
}

TEST_F(SkinInfluences, ThatBrokenListsHaveNoRoomForAreLeftOut)
{
    skin.setV({1, 9, 2, -1, 2, 2, 5}); // weights outside, and the end within an influence
    expectInfluences(0, {}, {});
    expectInfluences(1, {2}, {1.0F});
    expectInfluences(3, {}, {});
    skin.setVCount({4294967295U, 4294967295U, 1});
    expectInfluences(0, {2}, {1.0F});
    expectInfluences(2, {}, {});
    skin.setStreams({});
    expectInfluences(1, {}, {});
}
