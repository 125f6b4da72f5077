#include "examples/scenetool/AnimationFacts.h"
#include "tests/examples/ToolFiles.h"

#include "scene/animation/Animation.h"
#include "scene/deform/Controller.h"
#include "scene/deform/Skin.h"
#include "scene/graph/Camera.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/Light.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"

#include <Eigen/Core>

#include <algorithm>
#include <cmath>
#include <map>

// Documents of other programs, compared with facts that another reader found in them. The
// folder is named by the environment: DOCUMENT.dae with reference/DOCUMENT.json.
namespace velmoran::examples::test
{
namespace
{
using nlohmann::json;

const char* const KINDS[] = {"lookat", "matrix", "rotate", "scale", "skew", "translate"};

json orEmpty(const json& value)
{
    return value.is_null() ? json("") : value;
}

/// The IDs of a library, without the defaults of a new scene.
template <typename Items, typename GetID>
json listIDs(const Items& items, GetID getID)
{
    json ids = json::array();
    for (const auto& item : items)
    {
        if (getID(*item).rfind("default", 0) != 0)
        {
            ids.push_back(getID(*item));
        }
    }
    return ids;
}

std::vector<std::string> getKinds(const scene::Node& node)
{
    std::vector<std::string> kinds;
    for (const scene::ITransformationPtr& each : node.getOriginalTransformations())
    {
        kinds.emplace_back(KINDS[each->getType()]);
    }
    return kinds;
}

/// Whether translation, rotation and scale hold exactly what the list says. Look-at and
/// skew are not folded. Scales replace one another, so there must be one at most, that
/// of a matrix included; and translations and rotations behind it are exact only when
/// it scales all axes alike.
bool isExact(const scene::Node& node)
{
    const std::vector<std::string> kinds = getKinds(node);
    const auto count = [&kinds](const char* kind)
    { return std::count(kinds.begin(), kinds.end(), kind); };
    const bool uniform = node.getScale().isConstant(node.getScale().x(), 1e-5F);
    return count("lookat") + count("skew") == 0 && count("scale") + count("matrix") <= 1 &&
           (uniform || kinds.back() == "scale");
}

void compareNumbers(const json& expected, const std::vector<double>& actual, double tolerance)
{
    ASSERT_EQ(expected.size(), actual.size());
    for (std::size_t i = 0; i < actual.size(); ++i)
    {
        EXPECT_NEAR(expected[i].get<double>(), actual[i], tolerance) << "number " << i;
    }
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
    for (scene::NodePtr above = node->getParent(); above->getParent(); above = above->getParent())
    {
        if (!isExact(*above))
        {
            return false;
        }
    }
    const Eigen::Matrix3d linear = toMatrix(local).topLeftCorner<3, 3>().colwise().normalized();
    return (linear.transpose() * linear).isIdentity(1e-5);
}

/// Numbers may differ in the last digits that a float has.
void compareFacts(const json& expected, const json& actual)
{
    const json flat = expected.flatten();
    const json flatActual = actual.flatten();
    ASSERT_EQ(flat.size(), flatActual.size()) << actual;
    for (const auto& [key, value] : flat.items())
    {
        SCOPED_TRACE(key);
        if (value.is_number_float())
        {
            const auto number = value.get<double>();
            EXPECT_NEAR(number, flatActual[key].get<double>(), 1e-6 * (1.0 + std::abs(number)));
        }
        else
        {
            EXPECT_EQ(value, flatActual[key]);
        }
    }
}

/// One document, read and with its reference.
class Model
{
public:
    explicit Model(const SharedDocument& document)
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
        compareSettings();
        compareLibraries();
        compareGeometries();
        compareNodes();
        compareSkins();
        compareAnimation();
        compareSkinning();
    }

private:
    void compareSettings()
    {
        const char* const axes[] = {"X_UP", "Y_UP", "Z_UP"};
        EXPECT_EQ(m_reference["up_axis"], axes[m_scene->getUpAxis()]);
        EXPECT_EQ(std::stof(m_reference["unit_meter"].get<std::string>()), m_scene->getMeterUnit());
        EXPECT_EQ(m_reference["visual_scene"], m_scene->getRoot()->getID());
    }

    void compareLibraries()
    {
        json ids;
        const auto getID = [](const auto& item) { return item.getID(); };
        ids["images"] = listIDs(m_scene->getImageLibrary(), getID);
        ids["effects"] = listIDs(m_scene->getEffectLibrary(), getID);
        ids["lights"] = listIDs(m_scene->getLightLibrary(), getID);
        ids["animations"] = listIDs(m_scene->getAnimationsLibrary(), getID);
        ids["materials"] = listIDs(m_scene->getMaterialList(), [](const scene::Material& material)
                                   { return material.getMaterialID(); });
        ids["cameras"] = json::array();
        for (unsigned int i = 0; i < m_scene->getCameraCount(); ++i)
        {
            ids["cameras"].push_back(m_scene->getCameraAt(i)->getID());
        }
        EXPECT_EQ(m_reference["ids"], ids);
        EXPECT_EQ(m_reference["counts"]["controllers"], m_scene->getControllersLibrary().size());
    }

    void compareGeometries()
    {
        const json& geometries = m_reference["geometries"];
        EXPECT_EQ(geometries.size(), m_scene->getGeometryManager()->getCount());
        std::size_t total = 0;
        for (const json& expected : geometries)
        {
            const std::string id = expected["id"];
            SCOPED_TRACE(id);
            const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(
                m_scene->getGeometryManager()->getGeometry(id));
            ASSERT_TRUE(mesh);
            EXPECT_EQ(expected["name"], mesh->getName());
            json sources = json::array();
            for (const scene::StreamPtr& stream : mesh->getStreams())
            {
                sources.push_back({{"id", stream->getID()},
                                   {"stride", stream->getStride()},
                                   {"count", stream->getCount()},
                                   {"array_length", stream->getData().size()}});
            }
            EXPECT_EQ(expected["sources"], sources);
            comparePositions(expected, *mesh);
            std::size_t triangles = 0;
            for (const scene::IMeshPrimitivePtr& primitive : mesh->getMeshPrimitives())
            {
                triangles += primitive->getCount();
            }
            EXPECT_EQ(expected["triangle_count"], triangles);
            total += triangles;
        }
        EXPECT_EQ(m_reference["totals"]["triangles"], total);
    }

    void comparePositions(const json& expected, const scene::Mesh& mesh)
    {
        const scene::StreamMapping* mapping =
            scene::findStreamMapping(mesh.getVertices(), scene::POSITION);
        ASSERT_NE(mapping, nullptr);
        EXPECT_EQ(expected["position_source"], mapping->getStream()->getID());
        EXPECT_EQ(expected["position_count"], mapping->getStream()->getCount());
        const std::vector<float>& data = mapping->getStream()->getData();
        const Eigen::MatrixXd positions =
            Eigen::Map<const Eigen::MatrixXf>(data.data(), 3,
                                              static_cast<Eigen::Index>(data.size() / 3))
                .cast<double>();
        const auto compareRow = [&](const char* key, const Eigen::Vector3d& row, double tolerance) {
            compareNumbers(expected[key], {row.x(), row.y(), row.z()}, tolerance);
        };
        compareRow("position_min", positions.rowwise().minCoeff(), 1e-6);
        compareRow("position_max", positions.rowwise().maxCoeff(), 1e-6);
        compareRow("position_sum", positions.rowwise().sum(), 1e-3);
    }

    /// The nodes of the reference come in pre-order, as the library's; the root is ours.
    void compareNodes()
    {
        const std::vector<scene::NodePtr> nodes = m_scene->getNodeArray();
        const json& tree = m_reference["node_tree"];
        ASSERT_EQ(tree.size() + 1, nodes.size());
        std::map<std::string, scene::NodePtr> exact = {{"", m_scene->getRoot()}};
        for (std::size_t i = 0; i < tree.size(); ++i)
        {
            const scene::NodePtr& node = nodes[i + 1];
            const scene::NodePtr parent = node->getParent();
            const json& expected = tree[i];
            SCOPED_TRACE(node->getID());
            EXPECT_EQ(expected["name"].is_null() ? "" : expected["name"], node->getName());
            EXPECT_EQ(orEmpty(expected["sid"]), node->getSID());
            EXPECT_EQ(expected["type"].is_null() ? "" : expected["type"], node->getType());
            EXPECT_EQ(expected["transformations"], getKinds(*node));
            if (!orEmpty(expected["id"]).get<std::string>().empty())
            {
                EXPECT_EQ(expected["id"], node->getID());
            }
            // A parent without ID is written as ""; null stands for the scene itself.
            if (expected["parent"].is_null())
            {
                EXPECT_EQ(parent, m_scene->getRoot());
            }
            else if (expected["parent"] != "")
            {
                EXPECT_EQ(expected["parent"], parent->getID());
            }
            if (isExact(*node) && (parent == m_scene->getRoot() || exact.count(parent->getID())))
            {
                exact[node->getID()] = node;
            }
        }
        compareMatrices(exact);
    }

    void compareMatrices(const std::map<std::string, scene::NodePtr>& exact)
    {
        for (const json& expected : m_reference["rest_world_matrices"])
        {
            const auto found = exact.find(expected["node"]);
            if (found == exact.end())
            {
                continue;
            }
            SCOPED_TRACE(found->first);
            const Eigen::Matrix4f world = found->second->getCombinedTransformations();
            for (int row = 0; row < 4; ++row)
            {
                const Eigen::Vector4d values = world.row(row).cast<double>();
                compareNumbers(expected["world"][static_cast<std::size_t>(row)],
                               {values.x(), values.y(), values.z(), values.w()}, 1e-4);
            }
        }
    }

    void compareSkins()
    {
        for (const json& expected : m_reference["controllers"])
        {
            const scene::ControllerPtr controller = m_scene->getControllerById(expected["id"]);
            ASSERT_TRUE(controller && controller->getSkin());
            const scene::SkinPtr skin = controller->getSkin();
            EXPECT_EQ(expected["source"], skin->getSourceGeometry()->getID());
            EXPECT_EQ(expected["joints"], skin->getJointsInput("JOINT")->getNameList());
            EXPECT_EQ(expected["inv_bind_count"],
                      skin->getJointsInput("INV_BIND_MATRIX")->getCount());
            EXPECT_EQ(expected["weight_array_count"],
                      skin->getVertexWeightsInput("WEIGHT")->getCount());
            EXPECT_EQ(expected["vcount_length"], skin->getVCount().size());
            EXPECT_EQ(expected["v_length"], skin->getV().size());
        }
    }

    /// The facts that info tells of the animations, and the poses that play shows at the
    /// first and the third time of the reference, which are times of keys.
    void compareAnimation()
    {
        Json facts;
        collectAnimation(m_scene, facts);
        ASSERT_EQ(m_reference.contains("animation"), facts.contains("animation"));
        if (!facts.contains("animation"))
        {
            return;
        }
        const json& expected = m_reference["animation"];
        for (const auto& [key, value] : facts["animation"].items())
        {
            compareFacts(expected[key], json(value));
        }
        for (const std::size_t index : {0U, 2U})
        {
            comparePoses(expected["world_matrices"][index]);
        }
    }

    void comparePoses(const json& expected)
    {
        const std::string time = expected["time"].dump();
        const Outcome outcome = run(
            {"play", m_document.c_str(), "--from", time.c_str(), "--to", time.c_str(), "--json"});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        const json played = json::parse(outcome.out)["world_matrices"][0];
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
            comparePosed("/rest", "/rest", {});
            comparePosed("/animated/0", "/animated/0", {"--time"});
            comparePosed("/animated/2", "/animated/0", {"--time"});
        }
    }

    /// The pose `expected` of the reference with the pose `actual` that the command gives.
    void comparePosed(const std::string& expected, const std::string& actual,
                      std::vector<const char*> arguments)
    {
        SCOPED_TRACE(expected);
        const json& references = m_reference["skinned"];
        const std::string time =
            references[0].at(json::json_pointer(expected)).value("time", json()).dump();
        if (!arguments.empty())
        {
            arguments.push_back(time.c_str());
        }
        arguments.insert(arguments.begin(), {"skin", m_document.c_str(), "--json"});
        const Outcome outcome = run(arguments);
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        const json skins = json::parse(outcome.out)["skinned"];
        ASSERT_EQ(references.size(), skins.size());
        for (std::size_t i = 0; i < skins.size(); ++i)
        {
            for (const char* key : {"controller", "node", "skeletons", "joints_resolved",
                                    "joint_count", "joint_nodes", "node_world_is_identity"})
            {
                EXPECT_EQ(references[i][key], skins[i][key]);
            }
            compareVertices(references[i].at(json::json_pointer(expected))["with_node_world"],
                            skins[i].at(json::json_pointer(actual))["with_node_world"]);
        }
    }

    static void compareVertices(const json& expected, const json& actual)
    {
        ASSERT_EQ(expected["count"], actual["count"]);
        const auto toVector = [](const json& point)
        { return Eigen::Vector3d(point[0], point[1], point[2]); };
        const double size = (toVector(expected["max"]) - toVector(expected["min"])).norm();
        const auto compare = [&](const json& point, const json& other)
        { EXPECT_LE((toVector(point) - toVector(other)).norm(), 1e-4 * size) << other; };
        for (const char* key : {"min", "max", "mean"})
        {
            compare(expected[key], actual[key]);
        }
        for (std::size_t i = 0; i < expected["first20"].size(); ++i)
        {
            compare(expected["first20"][i], actual["vertices"][i]);
        }
    }

    std::string m_document;
    scene::SceneManagerPtr m_scene =
        boost::make_shared<scene::SceneManager>(core::event::EventManagerPtr());
    ReadResult m_result;
    json m_reference;
};
} // namespace

TEST(SharedModelsTest, DocumentsOfOtherProgramsHoldTheKnownFacts)
{
    const std::vector<SharedDocument> documents = sharedDocuments();
    if (documents.empty())
    {
        GTEST_SKIP() << "VELMORAN_MODELS names no folder of documents";
    }
    for (const SharedDocument& document : documents)
    {
        SCOPED_TRACE(document.file);
        Model(document).compare();
    }
}
} // namespace velmoran::examples::test
