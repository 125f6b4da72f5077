#include "tests/scene/geometry/GeometryBuilders.h"

#include <limits>
#include <random>
#include <tuple>

namespace velmoran::scene
{
namespace
{
// The rule of insertion told as a plain search.
int insertLinearly(std::vector<float>& data, std::size_t width, bool allowDuplicates,
                   const std::vector<float>& values)
{
    const std::size_t tuples = data.size() / width;
    for (std::size_t i = 0; i < tuples && !allowDuplicates; ++i)
    {
        if (std::equal(values.begin(), values.end(), &data[i * width]))
        {
            return static_cast<int>(i);
        }
    }
    data.insert(data.end(), values.begin(), values.end());
    return static_cast<int>(tuples);
}

TEST(Stream, InsertsLikeALinearSearchWhateverHappensToItsData)
{
    const float values[] = {
        0.0f, -0.0f, 1.0f, 2.5f, -3.0f, 1e-40f, std::numeric_limits<float>::quiet_NaN()};
    for (std::size_t width = 1; width <= 5; ++width)
    {
        SCOPED_TRACE(width);
        std::mt19937 random(7);
        Stream stream("s", static_cast<int>(width), false);
        std::vector<float> model;
        for (int step = 0; step < 6000; ++step)
        {
            std::vector<float> tuple(width);
            for (float& value : tuple)
            {
                // Mostly few values, so that tuples repeat; NaN is rare.
                value = values[random() % (random() % 50 == 0 ? 7 : 6)];
            }
            tuple[0] += static_cast<float>(random() % 40); // more than a table's first size
            const auto event = random() % 1000;
            if (event == 0 && !model.empty())
            {
                model[model.size() / 2] = 2.5f;
                stream.mutableData()[model.size() / 2] = 2.5f;
            }
            else if (event == 1)
            {
                model.resize(model.size() - model.size() / 3); // may cut through a tuple
                stream.setData(model);
            }
            else if (event == 2)
            {
                stream.setAllowDuplicates(!stream.getAllowDuplicates());
            }
            const int expected = insertLinearly(model, width, stream.getAllowDuplicates(), tuple);
            ASSERT_EQ(stream.insertValue(static_cast<int>(width), tuple.data()), expected) << step;
        }
        ASSERT_EQ(stream.getData().size(), model.size());
    }
}

TEST(Stream, InsertsManyTuplesAsOneAfterTheOther)
{
    std::mt19937 random(3);
    for (int round = 0; round < 60; ++round)
    {
        SCOPED_TRACE(round);
        const int width = 1 + round % 4;
        Stream many("s", width, round % 7 == 0);
        Stream single("s", width, many.getAllowDuplicates());
        for (const unsigned int kinds : {3u, 2000u, 40u})
        {
            std::vector<float> values(random() % 9000);
            for (float& value : values)
            {
                value = static_cast<float>(random() % kinds);
                value = random() % 900 == 0 ? std::numeric_limits<float>::quiet_NaN() : -value;
            }
            std::vector<int> expected;
            for (std::size_t i = 0; i + many.getStride() <= values.size(); i += many.getStride())
            {
                expected.push_back(single.insertValue(width, &values[i]));
            }
            ASSERT_EQ(many.insertValues(values), expected);
            ASSERT_EQ(many.getCount(), single.getCount());
            ASSERT_EQ(many.getData().size(), single.getData().size());
            many.mutableData().pop_back(); // the last tuple is broken now
            single.mutableData().pop_back();
        }
    }
}

TEST(Stream, ForgetsItsOrderOfTuplesWithItsStride)
{
    Stream stream("s", 1, false);
    for (float value = 0.0f; value < 40.0f; ++value)
    {
        stream.insertValue(1, &value);
    }
    stream.setStride(2);
    const float pair[] = {6.0f, 7.0f};
    EXPECT_EQ(stream.insertValue(2, pair), 3);
}

TEST(Stream, RefusesWhatIsNotATuple)
{
    const float values[] = {1.0f, 2.0f, 3.0f};
    const std::tuple<int, int, const float*> rows[] = {
        {3, 2, values}, {2, 3, values}, {0, 0, values}, {-1, -1, values}, {3, 3, nullptr}};
    for (const auto& [stride, n, tuple] : rows)
    {
        SCOPED_TRACE(stride);
        Stream stream("s", stride, false);
        EXPECT_EQ(stream.insertValue(n, tuple), -1);
        EXPECT_TRUE(stream.getData().empty() && stream.getCount() == 0);
    }
}

TEST(Stream, CountsWhatItStoresAndClonesAllButItsDescription)
{
    const float value[] = {4.0f, 5.0f};
    for (const bool allowDuplicates : {false, true})
    {
        Stream stream("s", 2, allowDuplicates);
        EXPECT_EQ(stream.insertValue(2, value), 0);
        EXPECT_EQ(stream.insertValue(2, value), allowDuplicates ? 1 : 0);
        stream.addParam("X", "float");
        stream.addName("joint");
        const StreamPtr copy = stream.clone();
        EXPECT_EQ(copy->getCount(), allowDuplicates ? 2 : 1);
        EXPECT_EQ(copy->getAllowDuplicates(), allowDuplicates);
        EXPECT_EQ(copy->getData(), stream.getData());
        EXPECT_TRUE(copy->getParamList().empty() && copy->getNameList().empty());
    }
}

TEST(Stream, TakesValuesOutOfItsOwnData)
{
    Stream stream("s", 2, true);
    const float first[] = {4.0f, 5.0f};
    stream.insertValue(2, first);
    for (int i = 1; i < 100; ++i) // grows, and so moves, several times
    {
        stream.insertValue(2, stream.getData().data());
        ASSERT_EQ(stream.getData()[static_cast<std::size_t>(2 * i) + 1], 5.0f);
    }
    EXPECT_EQ(stream.insertValues(stream.getData()).back(), 199);
    EXPECT_TRUE(Stream("s", -1, false).insertValues({1.0f, 2.0f}).empty());
}

TEST(StreamSemantic, IsReadFromMoreNamesThanItIsWrittenWith)
{
    const std::tuple<const char*, int, const char*> rows[] = {
        {"VERTEX", 0, "VERTEX"},        {"TEXCOORD0", 3, "TEXCOORD"},
        {"TEXCOORD7", 10, "TEXCOORD7"}, {"TEXBINORMAL", 12, "BINORMAL"},
        {"TEXTANGENT", 13, "TANGENT"},  {"Normal", 14, "INVALID"},
    };
    for (const auto& [read, semantic, written] : rows)
    {
        const StreamMapping mapping(read, StreamPtr(), 0);
        EXPECT_EQ(mapping.getSemantic(), semantic) << read;
        EXPECT_EQ(streamSemanticToString(mapping.getSemantic()), written);
    }
    EXPECT_EQ(streamSemanticToString(static_cast<StreamSemantic>(-1)), "INVALID");
}
} // namespace
} // namespace velmoran::scene
