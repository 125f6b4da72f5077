#include "scene/graph/LayerManager.h"
#include "tests/scene/SceneLog.h"

#include <gmock/gmock.h>

#include <map>

using namespace velmoran::scene;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace
{
LayerManagerPtr registryWith(const std::vector<std::string>& names)
{
    LayerManagerPtr layers = boost::make_shared<LayerManager>();
    for (const std::string& name : names)
    {
        layers->addLayer(name);
    }
    return layers;
}
} // namespace

TEST(LayerManager, StartsWithTheBuiltInLayersAndMakesThoseItIsAskedFor)
{
    LayerManager layers;
    int id = 0;
    for (const char* name :
         {"hidden", "visible", "selected", "cast_shadow", "transparent", "post_render"})
    {
        EXPECT_EQ(layers.getLayerName(id), name);
        EXPECT_EQ(layers.addLayer(name), id++);
    }
    EXPECT_EQ(layers.getLayerName(6), "");
    EXPECT_EQ(layers.getLayerName(-1), "");
    EXPECT_EQ(layers.getLayerID("new"), 6);
    EXPECT_EQ(layers.getLayerName(6), "new");
}

TEST(LayerManager, MergingAddsDiscardsOrRenamesAndTranslatesWhatWasNotNew)
{
    const LayerManagerPtr layers = registryWith({"mine"});
    const LayerManagerPtr other = registryWith({"x", "mine_new", "mine"});
    SceneLog log;
    const std::map<int, int> discarded = {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {8, 6}};
    EXPECT_EQ(layers->mergeLayers(other, true), discarded);
    EXPECT_EQ(layers->getLayerName(7), "mine_new");
    EXPECT_EQ(layers->getLayerName(8), "x");

    // Now all nine clash, and are renamed in the order of their names.
    const auto renamed = layers->mergeLayers(other, false);
    EXPECT_EQ(renamed.size(), 9U);
    EXPECT_EQ(renamed.at(3), 9);
    EXPECT_EQ(layers->getLayerName(9), "cast_shadow__renamed__");
    EXPECT_EQ(layers->getLayerName(renamed.at(8)), "mine__renamed__");

    // Again: the renamed ones are there already.
    EXPECT_EQ(layers->mergeLayers(other, false), renamed);
    EXPECT_EQ(layers->getLayerName(18), "");
    const std::string rename = "[INFO] Found repeated Layer ID. Renamed mine";
    std::vector<std::string> lines = log.take(); // of the built-in layers, too
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const std::string& line)
                               { return line.find("mine") == std::string::npos; }),
                lines.end());
    EXPECT_THAT(
        lines, ElementsAre("[INFO] Found repeated Layer ID: mine and discarded it.",
                           "[INFO] Added new layer mine_new with ID: 7",
                           rename + " to mine__renamed__", rename + "_new to mine_new__renamed__",
                           rename + " to mine__renamed__", rename + "_new to mine_new__renamed__"));
}

TEST(LayerManager, MergingItselfOrNothingChangesAndLogsNothing)
{
    const LayerManagerPtr layers = registryWith({"alone"});
    SceneLog log;
    EXPECT_TRUE(layers->mergeLayers(layers, false).empty());
    EXPECT_TRUE(layers->mergeLayers(LayerManagerPtr(), true).empty());
    EXPECT_EQ(layers->getLayerName(7), "");
    EXPECT_THAT(log.take(), IsEmpty());
}
