#include "scene/spatial/OctreeNode.h"
#include "tests/scene/spatial/Faces.h"

#include <array>
#include <cmath>
#include <limits>

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3f;
using Elements = std::vector<IPrimitivePtr>;

constexpr int UNLIMITED = std::numeric_limits<int>::max();

/// What a cell is to hold, by the plain rule; checked for the cell and all below it.
void expectSorted(const OctreeNode& cell, int maxDepth, std::size_t maxPrimitives,
                  const Elements& incoming)
{
    if (incoming.size() <= maxPrimitives || static_cast<int>(cell.getDepth()) > maxDepth)
    {
        EXPECT_EQ(cell.getPrimitives(), incoming);
        EXPECT_EQ(cell.getChildCount(), 0U);
        return;
    }
    EXPECT_TRUE(cell.getPrimitives().empty());
    ASSERT_EQ(cell.getChildCount(), 8U);
    const Vector3f half = (cell.getBVMax() - cell.getBVMin()) / 2;
    for (unsigned int i = 0; i < 8; ++i)
    {
        const OctreeNodePtr child = cell.getChildAt(i);
        const Vector3f side(static_cast<float>(i & 1U), static_cast<float>(i >> 1U & 1U),
                            static_cast<float>(i >> 2U));
        ASSERT_EQ(child->getParent(), &cell);
        ASSERT_EQ(child->getBVMin(), cell.getBVMin() + side.cwiseProduct(half));
        ASSERT_EQ(child->getBVMax(), child->getBVMin() + half);
        Elements met;
        for (const IPrimitivePtr& element : incoming)
        {
            if (element->intersects(child->getBVMin(), child->getBVMax()))
            {
                met.push_back(element);
            }
        }
        expectSorted(*child, maxDepth, maxPrimitives, met);
    }
}

TEST(OctreeCells, HoldWhatThePlainRuleGivesThem)
{
    Random random;
    Elements elements;
    for (int i = 0; i < 600; ++i)
    {
        const Vector3f at = random.point(1.25F); // some are outside
        const float size = i % 50 == 0 ? 1.0F : 0.1F;
        elements.push_back(makeFace(at, at + random.point(size), at + random.point(size)));
    }
    elements.push_back(makeFace({0, 0, 0}, {0, 0, 0}, {1, 1, 1}));       // met by nothing
    elements.push_back(makeFace({0, -1, -1}, {0, 1, -1}, {0, 0, 1}));    // between the octants
    elements.push_back(makeFace({.5F, 0, 0}, {.5F, .5F, 0}, {1, 0, 0})); // along planes
    for (const int maxDepth : {-1, 0, 1, 4})
    {
        for (const int maxPrimitives : {0, 5, 100, 1000})
        {
            SCOPED_TRACE(std::to_string(maxDepth) + ", " + std::to_string(maxPrimitives));
            OctreeNode root(nullptr, {-1, -1, -1}, {1, 1, 1});
            root.calculate(maxDepth, maxPrimitives, elements);
            expectSorted(root, maxDepth, static_cast<std::size_t>(maxPrimitives), elements);
        }
    }
}

// Faces that touch planes of cells or nearly do, needles, and all of it tiny or huge.
TEST(OctreeCells, TellFacesThatTouchWhateverTheScale)
{
    for (const int exponent : {-100, -44, 0, 35, 100})
    {
        SCOPED_TRACE(exponent);
        const float scale = std::ldexp(1.0F, exponent);
        Random random;
        Elements elements;
        for (int i = 0; i < 900; ++i)
        {
            std::array<Vector3f, 3> corners;
            for (Vector3f& corner : corners)
            {
                corner = (8.0F * random.point(1.0F)).array().round() / 8.0F; // on planes
                corner += (i % 3 == 0 ? 1e-7F : 0.0F) * random.point(1.0F);
            }
            corners[1] = i % 4 == 0 ? corners[0] + 1e-5F * corners[1] : corners[1];
            elements.push_back(
                makeFace(scale * corners[0], scale * corners[1], scale * corners[2]));
        }
        OctreeNode root(nullptr, {-scale, -scale, -scale}, {scale, scale, scale});
        root.calculate(3, 10, elements);
        expectSorted(root, 3, 10, elements);
    }
}

TEST(OctreeCells, KeepWhatTheyStoreWhenMoreComes)
{
    OctreeNode root(nullptr, {0, 0, 0}, {2, 2, 2});
    const IPrimitivePtr low = makeFace({0, 0, 0}, {.5F, 0, 0}, {0, .5F, 0});
    const IPrimitivePtr high = makeFace({2, 2, 2}, {1.5F, 2, 2}, {2, 1.5F, 2});
    root.calculate(0, 1, {low, IPrimitivePtr()});
    EXPECT_EQ(root.getPrimitives(), Elements{low});
    root.calculate(0, 1, {high}); // two are too many
    root.calculate(0, 1, {low});
    EXPECT_EQ(root.getPrimitives(), Elements{low});
    EXPECT_EQ(root.getChildCount(), 8U);
    EXPECT_EQ(root.getChildAt(0)->getPrimitives(), Elements{low});
    EXPECT_EQ(root.getChildAt(7)->getPrimitives(), Elements{high});
    EXPECT_FALSE(root.getChildAt(8));
    OctreeNode divided(nullptr, {0, 0, 0}, {1, 1, 1});
    divided.calculate(1, -1, {}); // a limit below 0 divides cells without elements
    EXPECT_EQ(divided.getChildAt(3)->getChildAt(5)->getDepth(), 2U);
    EXPECT_EQ(divided.getChildAt(3)->getChildAt(5)->getChildCount(), 0U);
}

TEST(OctreeCells, StopWhereLimitsWouldNot)
{
    // Fans around one point: dividing separates them no further than numbers go.
    OctreeNode pointed(nullptr, {0, 0, 0}, {1, 1, 1});
    pointed.calculate(UNLIMITED, 1,
                      Elements(3, makeFace({0, 0, 0}, {1e-30F, 0, 0}, {0, 1e-30F, 0})));
    OctreeNodePtr deepest = pointed.getChildAt(0);
    while (deepest->getChildCount() != 0)
    {
        deepest = deepest->getChildAt(0);
    }
    EXPECT_GT(deepest->getDepth(), 100U);
    EXPECT_EQ(deepest->getPrimitives().size(), 3U);
    // The same face twice, all over the cell: level by level up to a sane size.
    OctreeNode covered(nullptr, {0, 0, 0}, {1, 1, 1});
    covered.calculate(UNLIMITED, 1,
                      Elements(2, makeFace({0, 0, 0.3F}, {2, 0, 0.3F}, {0, 2, 0.3F})));
    EXPECT_GT(covered.getChildAt(0)->getChildAt(4)->getChildAt(0)->getChildCount(), 0U);
}

TEST(OctreeCells, ThatAreHeldSurviveTheirTree)
{
    OctreeNodePtr held;
    {
        OctreeNode root(nullptr, {0, 0, 0}, {1, 1, 1});
        OctreeNode* cell = &root;
        for (int depth = 0; depth < 100000; ++depth)
        {
            cell->subDivide();
            held = depth == 10 ? cell->getChildAt(1) : held;
            cell = cell->getChildAt(0).get();
        }
        held->subDivide();
    }
    EXPECT_EQ(held->getParent(), nullptr);
    EXPECT_EQ(held->getChildAt(7)->getDepth(), 1U);
}
} // namespace
} // namespace velmoran::scene
