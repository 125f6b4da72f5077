#include "scene/deform/Skin.h"
#include "scene/geometry/Stream.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace velmoran::scene;
using ::testing::ElementsAre;

namespace
{
StreamPtr makeStream(const std::string& id)
{
    return boost::make_shared<Stream>(id, 1, true);
}

// Joint names that joints and vertex weights share, matrices and weights.
class SkinData : public ::testing::Test
{
protected:
    StreamPtr names = makeStream("names");
    StreamPtr matrices = makeStream("matrices");
    StreamPtr weights = makeStream("weights");
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
    const StreamPtr newWeights = makeStream("new weights");
    const StreamPtr newNames = makeStream("new names");
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
