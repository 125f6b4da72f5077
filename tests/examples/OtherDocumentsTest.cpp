#include "examples/scenetool/SceneFacts.h"
#include "tests/examples/ToolFiles.h"

#include "scene/deform/Controller.h"
#include "scene/deform/Skin.h"
#include "scene/graph/ITransformation.h"

#include <cmath>

// Documents of other programs, compared with facts that another reader found in them. The
// folder is named by the environment: DOCUMENT.dae with reference/DOCUMENT.json.
namespace velmoran::examples::test
{
namespace
{
/// Whether translation, rotation and scale hold exactly what the list says. Look-at and
/// skew are not folded. Scales replace one another, so there must be one at most, that
/// of a matrix included; and translations and rotations behind it are exact only when
/// it scales all axes alike.
bool isExact(const scene::Node& node)
{
    std::vector<std::string> kinds;
    for (const scene::ITransformationPtr& each : node.getOriginalTransformations())
    {
        kinds.emplace_back(transformationName(each->getType()));
    }
    const auto count = [&kinds](const char* kind)
    { return std::count(kinds.begin(), kinds.end(), kind); };
    const bool uniform = node.getScale().isConstant(node.getScale().x(), 1e-5F);
    return count("lookat") + count("skew") == 0 && count("scale") + count("matrix") <= 1 &&
           (uniform || kinds.back() == "scale");
}

/// Whether that holds for `node` and all above it, but for the scene's root.
bool isExactUpwards(scene::NodePtr node)
{
    while (node->getParent() && isExact(*node))
    {
        node = node->getParent();
    }
    return !node->getParent();
}

Eigen::Matrix4d toMatrix(const json& rows)
{
    Eigen::Matrix4d matrix;
    for (Eigen::Index i = 0; i < 16; ++i)
    {
        matrix(i / 4, i % 4) =
            rows[static_cast<std::size_t>(i / 4)][static_cast<std::size_t>(i % 4)];
    }
    return matrix;
}

/// Whether `local` is a translation, a rotation and a scale, that is, its columns stand
/// at right angles, and the nodes above hold exactly what their lists say.
bool canHold(const scene::NodePtr& node, const json& local)
{
    const Eigen::Matrix3d linear = toMatrix(local).topLeftCorner<3, 3>().colwise().normalized();
    return isExactUpwards(node->getParent()) && (linear.transpose() * linear).isIdentity(1e-5);
}

/// Compares what both tell. Numbers may differ by a part, usually in the last digits that a
/// float has.
void compareFacts(const json& expected, const json& actual, double part = 1e-6)
{
    if (expected.is_number_float())
    {
        const auto number = expected.get<double>();
        EXPECT_NEAR(number, actual.get<double>(), part * (1.0 + std::abs(number)));
    }
    else if (!actual.is_structured())
    {
        EXPECT_EQ(expected, actual);
    }
    ASSERT_TRUE(!actual.is_array() || expected.size() == actual.size()) << actual;
    for (const auto& [key, value] : actual.items())
    {
        const json::json_pointer place('/' + key);
        const bool isOfTriangles = key == "faces_by_kind"; // the reference counts what was written
        if (actual.is_structured() && expected.contains(place) && !isOfTriangles)
        {
            SCOPED_TRACE(key);
            compareFacts(expected[place], value, part);
        }
    }
}

/// One document, read and with its reference.
class Model
{
public:
    explicit Model(const OtherDocument& document)
        : m_document(document.file),
          m_result(ColladaReader().readFile(m_document, m_scene)),
          m_reference(document.reference)
    {
    }

    void compare()
    {
        if (!m_reference.value("well_formed", true))
        {
            EXPECT_FALSE(m_result.ok);
            EXPECT_THAT(m_result.error, ::testing::HasSubstr("the document ends too early"));
            return;
        }
        ASSERT_TRUE(m_result.ok) << m_result.error;
        EXPECT_THAT(m_result.warnings, ::testing::IsEmpty());
        adaptReference();
        const json facts = collectFacts(m_scene, m_document);
        for (const char* key : {"up_axis", "visual_scene", "counts", "ids", "geometries", "totals",
                                "controllers", "node_tree"})
        {
            SCOPED_TRACE(key);
            compareFacts(m_reference[key], facts[key]);
        }
        EXPECT_EQ(std::stof(m_reference["unit_meter"].get<std::string>()), m_scene->getMeterUnit());
        compareWorlds();
        compareSkins();
        ASSERT_EQ(m_reference.contains("animation"), facts.contains("animation"));
        if (facts.contains("animation"))
        {
            compareAnimation(facts["animation"]);
        }
        compareSkinning();
    }

private:
    /// Orders geometries as the library does, and leaves out the IDs that nodes lack: the
    /// library makes some up. A parent without ID is written as "".
    void adaptReference()
    {
        json& geometries = m_reference["geometries"];
        std::sort(geometries.begin(), geometries.end(),
                  [](const json& a, const json& b) { return a["id"] < b["id"]; });
        for (json& node : m_reference["node_tree"])
        {
            for (const char* key : {"id", "parent"})
            {
                if (node[key] == "" || (node[key].is_null() && key == std::string("id")))
                {
                    node.erase(key);
                }
            }
        }
    }

    void compareWorlds()
    {
        for (const json& expected : m_reference["rest_world_matrices"])
        {
            SCOPED_TRACE(expected["node"]);
            const scene::NodePtr node = m_scene->getNodeByID(expected["node"]);
            ASSERT_TRUE(node);
            const Eigen::Matrix4d world = node->getCombinedTransformations().cast<double>();
            EXPECT_TRUE(!isExactUpwards(node) ||
                        (toMatrix(expected["world"]) - world).norm() <= 1e-4)
                << world;
        }
    }

    /// What the facts don't tell of them.
    void compareSkins()
    {
        for (const json& expected : m_reference["controllers"])
        {
            const scene::ControllerPtr controller = m_scene->getControllerById(expected["id"]);
            ASSERT_TRUE(controller && controller->getSkin());
            const scene::SkinPtr skin = controller->getSkin();
            EXPECT_EQ(expected["inv_bind_count"],
                      skin->getJointsInput("INV_BIND_MATRIX")->getCount());
            EXPECT_EQ(expected["weight_array_count"],
                      skin->getVertexWeightsInput("WEIGHT")->getCount());
        }
    }

    /// The facts, and the poses that play shows at the first and the third time of the
    /// reference, which are times of keys.
    void compareAnimation(const json& facts)
    {
        const json& expected = m_reference["animation"];
        compareFacts(expected, facts);
        for (const std::size_t index : {0U, 2U})
        {
            comparePoses(expected["world_matrices"][index]);
        }
    }

    void comparePoses(const json& expected)
    {
        const std::string time = expected["time"].dump();
        const json played =
            runJson({"play", m_document, "--from", time, "--to", time})["world_matrices"][0];
        std::size_t compared = 0;
        for (const json& node : expected["nodes"])
        {
            const scene::NodePtr known = m_scene->getNodeByID(node["node"]);
            for (const json& actual : played["nodes"])
            {
                if (actual["node"] == node["node"] && canHold(known, node["local"]))
                {
                    SCOPED_TRACE(node["node"].get<std::string>() + " at " + time);
                    const Eigen::Matrix4d world = toMatrix(node["world"]);
                    const Eigen::Matrix4d difference = toMatrix(actual["world"]) - world;
                    EXPECT_LE(difference.cwiseAbs().maxCoeff(), 1e-4 * world.cwiseAbs().maxCoeff());
                    ++compared;
                }
            }
        }
        EXPECT_GT(compared, 0U);
    }

    /// What skin shows at rest and at the first and the third time of the reference, which
    /// are times of keys.
    void compareSkinning()
    {
        if (!m_reference.value("skinned", json::array()).empty())
        {
            comparePosed("/rest", "/rest");
            comparePosed("/animated/0", "/animated/0");
            comparePosed("/animated/2", "/animated/0");
        }
    }

    /// The pose `expected` of the reference with the pose `actual` that the command gives at
    /// its time.
    void comparePosed(const std::string& expected, const std::string& actual)
    {
        SCOPED_TRACE(expected);
        const json& references = m_reference["skinned"];
        const json::json_pointer place(expected);
        const std::string time = references[0].at(place).value("time", json()).dump();
        std::vector<std::string> arguments = {"skin", m_document};
        if (references[0].at(place).contains("time"))
        {
            arguments.insert(arguments.end(), {"--time", time});
        }
        json skins = runJson(arguments)["skinned"];
        ASSERT_EQ(references.size(), skins.size());
        for (std::size_t i = 0; i < skins.size(); ++i)
        {
            json pose = skins[i].at(json::json_pointer(actual))["with_node_world"];
            const json& wanted = references[i].at(place)["with_node_world"];
            const std::vector<json> vertices = pose["vertices"];
            ASSERT_LE(wanted["first20"].size(), vertices.size());
            pose["first20"] = std::vector<json>(
                vertices.begin(), vertices.begin() + std::ptrdiff_t(wanted["first20"].size()));
            compareFacts(wanted, pose, 1e-5);
            skins[i].erase("rest");
            skins[i].erase("animated");
            compareFacts(references[i], skins[i]);
        }
    }

    std::string m_document;
    scene::SceneManagerPtr m_scene =
        boost::make_shared<scene::SceneManager>(core::event::EventManagerPtr());
    ReadResult m_result;
    json m_reference;
};
} // namespace

TEST(OtherDocumentsTest, DocumentsOfOtherProgramsHoldTheKnownFacts)
{
    const std::vector<OtherDocument> documents = otherDocuments();
    if (documents.empty())
    {
        GTEST_SKIP() << "VELMORAN_MODELS names no folder of documents";
    }
    for (const OtherDocument& document : documents)
    {
        SCOPED_TRACE(document.file);
        Model(document).compare();
    }
}
} // namespace velmoran::examples::test
