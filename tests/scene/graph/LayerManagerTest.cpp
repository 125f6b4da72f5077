#include "scene/graph/LayerManager.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

using namespace velmoran::scene;
using ::testing::ElementsAre;

namespace
{
// The messages of "SceneManager.log" about layers of one name, without the first `skip`.
// Tests run side by side write to the same file, so each has a name of its own.
std::vector<std::string> logged(const std::string& layerName, std::size_t skip = 0)
{
    std::ifstream file("SceneManager.log");
    std::vector<std::string> found;
    for (std::string line; std::getline(file, line);)
    {
        if (line.find(layerName) != std::string::npos)
        {
            found.push_back(line.substr(line.find('[')));
        }
    }
    found.erase(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(skip));
    return found;
}

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
    const std::size_t before = logged("merge_test").size();
    const LayerManagerPtr layers = registryWith({"merge_test"});
    const LayerManagerPtr other = registryWith({"x", "merge_test_new", "merge_test"});
    const std::map<int, int> discarded = {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {8, 6}};
    EXPECT_EQ(layers->mergeLayers(other, true), discarded);
    EXPECT_EQ(layers->getLayerName(7), "merge_test_new");
    EXPECT_EQ(layers->getLayerName(8), "x");

    // Now all nine clash, and are renamed in the order of their names.
    const auto renamed = layers->mergeLayers(other, false);
    EXPECT_EQ(renamed.size(), 9U);
    EXPECT_EQ(renamed.at(3), 9);
    EXPECT_EQ(layers->getLayerName(9), "cast_shadow__renamed__");
    EXPECT_EQ(layers->getLayerName(renamed.at(8)), "merge_test__renamed__");

    // Again: the renamed ones are there already.
    EXPECT_EQ(layers->mergeLayers(other, false), renamed);
    EXPECT_EQ(layers->getLayerName(18), "");
    const std::string rename = "[INFO] Found repeated Layer ID. Renamed merge_test";
    EXPECT_THAT(logged("merge_test", before),
                ElementsAre("[INFO] Found repeated Layer ID: merge_test and discarded it.",
                            "[INFO] Added new layer merge_test_new with ID: 7",
                            rename + " to merge_test__renamed__",
                            rename + "_new to merge_test_new__renamed__",
                            rename + " to merge_test__renamed__",
                            rename + "_new to merge_test_new__renamed__"));
}

TEST(LayerManager, MergingItselfOrNothingChangesAndLogsNothing)
{
    const std::size_t before = logged("layer_alone").size();
    const LayerManagerPtr layers = registryWith({"layer_alone"});
    EXPECT_TRUE(layers->mergeLayers(layers, false).empty());
    EXPECT_TRUE(layers->mergeLayers(LayerManagerPtr(), true).empty());
    EXPECT_EQ(layers->getLayerName(7), "");
    EXPECT_EQ(logged("layer_alone").size(), before);
}
