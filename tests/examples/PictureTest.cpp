#include "examples/scenetool/Picture.h"
#include "tests/examples/ColladaText.h"

#include <algorithm>
#include <limits>

namespace velmoran::examples::test
{
namespace
{
using Corners = std::array<Eigen::Vector3d, 3>;

const Eigen::Vector3d RED(1.0, 0.0, 0.0);
const Eigen::Vector3d BLUE(0.0, 0.0, 1.0);

/// The picture with a letter for each pixel: red, blue, white, other.
std::vector<std::string> readImage(const Image& image)
{
    std::vector<std::string> rows(image.height);
    for (std::size_t i = 0; i < image.width * image.height; ++i)
    {
        const Eigen::Vector3i pixel(image.pixels[3 * i], image.pixels[3 * i + 1],
                                    image.pixels[3 * i + 2]);
        char letter = pixel == Eigen::Vector3i(255, 0, 0) ? 'r' : 'o';
        letter = pixel == Eigen::Vector3i(0, 0, 255) ? 'b' : letter;
        rows[i / image.width] += pixel == Eigen::Vector3i(255, 255, 255) ? '.' : letter;
    }
    return rows;
}

/// Where columns of the picture begin and end to be drawn on: 2 for each thing to see.
std::size_t countEdges(const Image& image)
{
    std::string columns(image.width, '.');
    for (const std::string& row : readImage(image))
    {
        for (std::size_t x = 0; x < row.size(); ++x)
        {
            columns[x] = row[x] == '.' ? columns[x] : 'o';
        }
    }
    std::size_t edges = 0;
    for (std::size_t x = 1; x < columns.size(); ++x)
    {
        edges += columns[x] != columns[x - 1] ? 1U : 0U;
    }
    return edges;
}
} // namespace

TEST(CanvasTest, NearTrianglesHideFarOnesAndWhatIsBesideIsCutOff)
{
    for (const bool nearFirst : {true, false})
    {
        Canvas canvas(4, 2);
        const Corners near = {Eigen::Vector3d(-99, -99, 1), {2, -99, 1}, {2, 99, 1}};
        const Corners far = {Eigen::Vector3d(-99, -99, 0), {99, -99, 0}, {0, 99, 0}};
        canvas.drawTriangle(nearFirst ? near : far, nearFirst ? RED : BLUE);
        canvas.drawTriangle(nearFirst ? far : near, nearFirst ? BLUE : RED);
        EXPECT_THAT(readImage(canvas.shrink(1)), ElementsAre("rrbb", "rrbb"));
    }
}

TEST(CanvasTest, WhatCannotBeDrawnIsLeftOut)
{
    Canvas canvas(2, 2);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double huge = 1e300;
    canvas.drawTriangle({Eigen::Vector3d(nan, 0, 0), {2, 0, 0}, {0, 2, 0}}, RED);
    canvas.drawTriangle({Eigen::Vector3d(-huge, -huge, 0), {huge, -huge, 0}, {0, huge, 0}}, RED);
    canvas.drawTriangle({Eigen::Vector3d(0, 0, 0), {1, 1, 0}, {2, 2, 0}}, RED);
    EXPECT_THAT(readImage(canvas.shrink(1)), ElementsAre("..", ".."));
    // Seen from behind, over three of four pixels: each has a part in the mean.
    canvas.drawTriangle({Eigen::Vector3d(0, 0, 0), {0, 2.2, 0}, {2.2, 0, 0}}, RED);
    EXPECT_THAT(readImage(canvas.shrink(1)), ElementsAre("rr", "r."));
    EXPECT_THAT(canvas.shrink(2).pixels, ElementsAre(255, 64, 64));
}

TEST_F(ColladaTest, PicturesShowScenesFromTheFrontSideBySide)
{
    // The quad stands upright for Y up; with X or Z up it has to be turned to do so.
    const std::string turns[] = {"<rotate>0 0 1 -90</rotate>", "", "<rotate>1 0 0 90</rotate>"};
    const char* const axes[] = {"X_UP", "Y_UP", "Z_UP"};
    Picture picture;
    for (const std::size_t axis : {0U, 1U, 2U})
    {
        readFine(std::string("<asset><up_axis>") + axes[axis] + "</up_axis></asset>" +
                 quad(triangleList("0 1 2 0 2 3")) +
                 visualScene("<node>" + turns[axis] +
                             "<scale>1 4 1</scale><instance_geometry "
                             "url=\"#quad\"/></node>"));
        picture.add(m_scene);
    }
    readFine(visualScene("<node/>"));
    picture.add(m_scene);
    EXPECT_EQ(picture.getCount(), 3U) << "nothing to see in the last scene";
    const Image image = picture.render();
    EXPECT_EQ(image.height, 800U);
    EXPECT_LT(image.width, image.height) << "each is four times as high as wide";
    EXPECT_EQ(countEdges(image), 6U);
    // All of the same size and height.
    const std::vector<std::string> rows = readImage(image);
    for (const std::size_t y : {100U, 400U, 700U})
    {
        EXPECT_EQ(std::count(rows[y].begin(), rows[y].end(), '.'),
                  std::count(rows[300].begin(), rows[300].end(), '.'));
    }
}
} // namespace velmoran::examples::test
