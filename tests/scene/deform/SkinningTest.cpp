#include "tests/scene/AvatarUnderTest.h"

#include <random>

namespace velmoran::scene
{
namespace
{
// A chain of joints, turned, scaled and moved, with random skin data. The fifth name has no
// node; the last two are not among the bound joints.
class RandomSkin : public testing::Test
{
protected:
    RandomSkin()
    {
        std::vector<std::string> names;
        std::vector<float> rows;
        std::string above = "root";
        for (const char* const name : {"a", "b", "c", "d", "gone", "e", "f"})
        {
            names.emplace_back(name);
            const std::vector<float> matrix = randomFloats(16);
            rows.insert(rows.end(), matrix.begin(), matrix.end());
            if (names.back() != "gone")
            {
                const NodePtr joint = avatar.addJoint(above, name, randomVector());
                joint->rotate(Eigen::AngleAxisf(random(), randomVector().normalized()).matrix());
                joint->setScale(randomVector());
                above = name;
            }
        }
        weightJoints = makeNames("names", names);
        bindJoints = makeNames("bound", {"b", "a", "gone", "c", "d", "b"});
        matrices = makeFloats("matrices", 16, rows);
        weights = makeFloats("weights", 1, randomFloats(40));
        skin->setBindShapeMatrix(Eigen::Map<const Eigen::Matrix4f>(rows.data()));
        avatar.node->setTranslation(Eigen::Translation3f(randomVector()));
        avatar.node->setScale(randomVector());
        setInfluences({0, 1, 4, 3, 1, 6, 2, 2, 1, 5});
    }

    float random() { return m_distribution(m_engine); }
    Eigen::Vector3f randomVector() { return {random(), random(), random()}; }

    std::vector<float> randomFloats(std::size_t count)
    {
        std::vector<float> floats;
        std::generate_n(std::back_inserter(floats), count, [this] { return random(); });
        return floats;
    }

    void setInfluences(const std::vector<unsigned int>& vcount)
    {
        std::vector<int> v;
        for (unsigned int i = 0; i < 7 * vcount.size(); ++i)
        {
            v.insert(v.end(),
                     {static_cast<int>(m_engine() % 7), static_cast<int>(m_engine() % 40)});
        }
        skin->setVCount(vcount);
        skin->setV(v);
    }

    StreamPtr pose(const StreamPtr& vertices) const
    {
        return SceneManager::calculateSkinnedVerticesStream(avatar.manager, avatar.node, vertices,
                                                            skin, weightJoints, weights, matrices,
                                                            bindJoints);
    }

    /// Weight * world * inverse bind matrix of an influence; zeros without a node.
    Eigen::Matrix4d term(std::size_t joint, std::size_t weight) const
    {
        const std::string& name = weightJoints->getNameList()[joint];
        const NodePtr node = avatar.manager->getNodeByID(name);
        const std::vector<std::string>& bound = bindJoints->getNameList();
        const auto found = std::find(bound.begin(), bound.end(), name);
        const auto index = found == bound.end() ? static_cast<std::ptrdiff_t>(joint)
                                                : std::distance(bound.begin(), found);
        const Eigen::Matrix4f rows(&matrices->getData()[static_cast<std::size_t>(index) * 16]);
        return node ? Eigen::Matrix4d(static_cast<double>(weights->getData()[weight]) *
                                      node->getCombinedTransformations().cast<double>() *
                                      rows.transpose().cast<double>())
                    : Eigen::Matrix4d(Eigen::Matrix4d::Zero());
    }

    /// The plain sum, in double precision.
    std::vector<float> model(const StreamPtr& vertices) const
    {
        std::vector<float> result = vertices->getData();
        const auto stride = static_cast<std::size_t>(vertices->getStride());
        const std::size_t read = std::min<std::size_t>(stride, 4);
        std::size_t influence = 0;
        for (std::size_t i = 0; i < result.size() / stride; ++i)
        {
            Eigen::Vector4d p(0.0, 0.0, 0.0, 1.0);
            Eigen::Matrix4d sum = Eigen::Matrix4d::Zero();
            for (unsigned int j = 0; j < skin->getVCount()[i]; ++j, ++influence)
            {
                sum += term(static_cast<std::size_t>(skin->getV()[2 * influence]),
                            static_cast<std::size_t>(skin->getV()[2 * influence + 1]));
            }
            std::copy_n(&result[i * stride], read, p.data());
            p = avatar.node->getCombinedTransformations().cast<double>() * sum *
                skin->getBindShapeMatrix().cast<double>() * p;
            std::transform(p.data(), p.data() + read, &result[i * stride],
                           [](double value) { return static_cast<float>(value); });
        }
        return result;
    }

    std::mt19937 m_engine{1};
    std::uniform_real_distribution<float> m_distribution{0.5F, 1.5F};
    AvatarUnderTest avatar;
    SkinPtr skin = boost::make_shared<Skin>(IGeometryPtr());
    StreamPtr weightJoints, bindJoints, matrices, weights;
};
} // namespace

TEST_F(RandomSkin, IsPosedAsThePlainSumSaysForEveryWidthOfTuples)
{
    for (const int stride : {1, 2, 3, 4, 5, 7})
    {
        SCOPED_TRACE(stride);
        const StreamPtr vertices =
            makeFloats("id", stride, randomFloats(10 * static_cast<std::size_t>(stride)));
        const StreamPtr posed = pose(vertices);
        const std::vector<float> wanted = model(vertices);
        const float size = *std::max_element(wanted.begin(), wanted.end());
        EXPECT_GT(size, 10.0F);
        EXPECT_LT(distanceOf(posed->getData(), wanted), 1e-6 * static_cast<double>(size));
        EXPECT_EQ(posed->getID(), "id");
        EXPECT_EQ(posed->getStride(), stride);
        EXPECT_EQ(posed->getCount(), 10);
        EXPECT_TRUE(posed->getAllowDuplicates());
    }
}

TEST(Skinning, TakesWeightsAsTheyAre)
{
    AvatarUnderTest avatar;
    avatar.bind({{4.0F, 8.0F, 12.0F}, {1.0F, 1.0F, 1.0F}, {1.0F, 2.0F, 3.0F}},
                {{{1, 0.5F}, {1, 0.25F}}, {}, {{0, 1.0F}}});
    EXPECT_THAT(avatar.pose(), ElementsAre(3.0F, 6.0F, 9.0F, 0.0F, 0.0F, 0.0F, 1.0F, 2.0F, 3.0F));
}

// All joints stand where they are bound: a vertex is multiplied by the sum of its weights.
TEST(Skinning, LeavesOutWhatBrokenListsHaveNoRoomFor)
{
    using Counts = std::vector<unsigned int>;
    // The last column is how much of each vertex is carried.
    const std::tuple<const char*, Counts, std::vector<int>, std::vector<float>> rows[] = {
        {"counts end early", {1, 1}, {0, 0, 1, 0, 2, 0}, {1, 1, 0}},
        {"influences end early", {1, 1, 1}, {0, 0, 1, 0}, {1, 1, 0}},
        {"influences end in the middle of one", {1, 1, 1}, {0, 0, 1, 0, 2}, {1, 1, 0}},
        {"more counts and influences than vertices",
         {1, 1, 1, 9},
         {0, 0, 1, 0, 2, 0, 3, 0},
         {1, 1, 1}},
        {"huge counts", {4294967295U, 4294967295U, 4294967295U}, {0, 0, 0, 0}, {2, 0, 0}},
        {"joint indices outside", {1, 1, 2}, {4, 0, -1, 0, 2, 0, -2147483647, 0}, {0, 0, 1}},
        {"weight indices outside", {1, 1, 2}, {0, 1, 1, -1, 2, 0, 2, 2147483647}, {0, 0, 1}},
        {"nothing", {}, {}, {0, 0, 0}},
    };
    AvatarUnderTest avatar;
    const Points points = {{1.0F, 1.0F, 1.0F}, {2.0F, 2.0F, 2.0F}, {1.0F, 2.0F, 3.0F}};
    avatar.bind(points, {{{0, 1.0F}}, {}, {}});
    for (const auto& [name, vcount, v, carried] : rows)
    {
        SCOPED_TRACE(name);
        avatar.skin->setVCount(vcount);
        avatar.skin->setV(v);
        Points wanted = points;
        for (std::size_t i = 0; i < wanted.size(); ++i)
        {
            wanted[i] *= carried[i];
        }
        EXPECT_LT(distanceOf(avatar.pose(), flat(wanted)), 1e-6);
    }
}

TEST(Skinning, WithoutAListLeavesEveryVertexWithoutInfluences)
{
    const AvatarUnderTest avatar;
    const StreamPtr names = avatar.skin->getJointsInput("JOINT");
    const StreamPtr weights = avatar.skin->getVertexWeightsInput("WEIGHT");
    const StreamPtr matrices = avatar.skin->getJointsInput("INV_BIND_MATRIX");
    const StreamPtr shortMatrices = makeFloats("short", 1, std::vector<float>(15, 1.0F));
    const StreamPtr none;
    const auto pose = [&](const SceneManagerPtr& scene, const StreamPtr& vertices,
                          const SkinPtr& skin, const StreamPtr& jointNames, const StreamPtr& values,
                          const StreamPtr& binding)
    {
        return SceneManager::calculateSkinnedVerticesStream(scene, NodePtr(), vertices, skin,
                                                            jointNames, values, binding, none);
    };
    const auto& v = avatar.vertices;
    const auto& skin = avatar.skin;
    const auto& scene = avatar.manager;
    EXPECT_LT(distanceOf(pose(scene, v, skin, names, weights, matrices)->getData(), v->getData()),
              1e-6);
    for (const StreamPtr& posed :
         {pose(SceneManagerPtr(), v, skin, names, weights, matrices),
          pose(scene, v, SkinPtr(), names, weights, matrices),
          pose(scene, v, skin, none, weights, matrices),
          pose(scene, v, skin, names, none, matrices), pose(scene, v, skin, names, weights, none),
          pose(scene, v, skin, names, weights, shortMatrices)})
    {
        EXPECT_EQ(posed->getData(), std::vector<float>(v->getData().size()));
    }
    EXPECT_FALSE(pose(scene, none, skin, names, weights, matrices));
    for (const int stride : {0, -3})
    {
        v->setStride(stride);
        EXPECT_THAT(pose(scene, v, skin, names, weights, matrices)->getData(), IsEmpty());
    }
    v->setStride(3);
    v->setData({1.0F, 2.0F});
    EXPECT_THAT(avatar.pose(), IsEmpty());
}
} // namespace velmoran::scene
