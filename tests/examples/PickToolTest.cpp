#include "examples/scenetool/ScenePicker.h"
#include "scene/geometry/IPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "tests/examples/ToolFiles.h"

#include <Eigen/Geometry>

#include <array>
#include <limits>
#include <random>

// What rays meet.
namespace velmoran::examples::test
{
namespace
{
constexpr double NOTHING = std::numeric_limits<double>::infinity();

/// The triangles of a scene in world space, each tested for every ray.
class EveryTriangle
{
public:
    explicit EveryTriangle(const scene::NodePtr& root)
    {
        const auto nodes = root->getNodesBelow();
        const auto worlds = root->getCombinedTransformationsBelow();
        for (std::size_t i = 0; i < nodes.size(); ++i)
        {
            for (const scene::InstanceGeometryPtr& instance : nodes[i]->getInstancedGeometries())
            {
                add(boost::dynamic_pointer_cast<scene::Mesh>(instance->getGeometry()),
                    worlds[i].cast<double>());
            }
        }
    }

    const Eigen::AlignedBox3d& getBox() const { return m_box; }

    /// Distances to the nearest triangle; `NOTHING` when there is none.
    struct Nearest
    {
        double surely = NOTHING;  ///< of those that the ray meets well inside
        double perhaps = NOTHING; ///< of those that it meets or just misses
    };

    Nearest findNearest(const Eigen::Vector3d& origin, const Eigen::Vector3d& direction) const
    {
        constexpr double MARGIN = 1e-5; // of a triangle's size
        Nearest nearest;
        for (const std::array<Eigen::Vector3d, 3>& triangle : m_triangles)
        {
            // Solves origin + t * direction = first corner + u * a + v * b.
            const auto& [first, a, b] = triangle;
            const Eigen::Vector3d from = origin - first;
            const Eigen::Vector3d normal = a.cross(b);
            const double slope = -direction.dot(normal);
            const Eigen::Vector3d turned = from.cross(direction);
            const double u = b.dot(turned) / slope;
            const double v = -a.dot(turned) / slope;
            const double t = from.dot(normal) / slope;
            const double inside = std::min({u, v, 1.0 - u - v, t});
            nearest.surely = inside >= MARGIN ? std::min(nearest.surely, t) : nearest.surely;
            nearest.perhaps = inside >= -MARGIN ? std::min(nearest.perhaps, t) : nearest.perhaps;
        }
        return nearest;
    }

private:
    void add(const scene::MeshPtr& mesh, const Eigen::Matrix4d& world)
    {
        for (const scene::IMeshPrimitivePtr& primitive : mesh->getMeshPrimitives())
        {
            for (const scene::IPrimitivePtr& face : primitive->getPrimitives())
            {
                std::vector<Eigen::Vector3d> corners;
                for (const scene::VertexPtr& vertex : face->getVertexArray())
                {
                    const auto p = vertex->getPositionVector();
                    corners.push_back((world * Eigen::Vector4d(p[0], p[1], p[2], 1.0)).head<3>());
                    m_box.extend(corners.back());
                }
                m_triangles.push_back(
                    {corners[0], corners[1] - corners[0], corners[2] - corners[0]});
            }
        }
    }

    std::vector<std::array<Eigen::Vector3d, 3>> m_triangles; ///< a corner and two sides
    Eigen::AlignedBox3d m_box;
};

/// Two squares one behind the other, the far one through a node, and a slanted triangle.
std::string squares()
{
    return quad(triangleList("0 1 2 0 2 3")) +
           visualScene("<node><instance_geometry url=\"#quad\"/></node><node><translate>0 0 -3"
                       "</translate><scale>4 4 1</scale><instance_geometry url=\"#quad\"/></node>");
}

class PickTool : public ToolFolder
{
protected:
    /// Compares picks with what testing every triangle gives. What floats can't tell, a hit at
    /// the edge of a triangle, may be either.
    void compare(const std::string& file)
    {
        SCOPED_TRACE(file);
        const auto scene = boost::make_shared<scene::SceneManager>(core::event::EventManagerPtr());
        ASSERT_TRUE(ColladaReader().readFile(file, scene).ok);
        const EveryTriangle all(scene->getRoot());
        if (all.getBox().isEmpty())
        {
            return; // a skin only
        }
        const ScenePicker picker(scene);
        const double size = all.getBox().diagonal().norm();
        std::mt19937 random(7);
        std::uniform_real_distribution<double> unit(-1.0, 1.0);
        const auto anywhere = [&]
        {
            const Eigen::Vector3d place(unit(random), unit(random), unit(random));
            return Eigen::Vector3d(all.getBox().center() + size * place);
        };
        std::size_t hits = 0;
        for (int i = 0; i < 300; ++i)
        {
            const Eigen::Vector3d origin = anywhere().cast<float>().cast<double>();
            const Eigen::Vector3d direction = (all.getBox().center() + anywhere() * 0.2 - origin);
            const Eigen::Vector3d along = direction.normalized();
            const boost::optional<Pick> pick = picker.pick(origin, direction);
            const double distance = pick ? pick->distance : NOTHING;
            const double tolerance = 1e-5 * size;
            const EveryTriangle::Nearest nearest = all.findNearest(origin, along);
            EXPECT_LE(distance, nearest.surely + tolerance);
            EXPECT_GE(distance, nearest.perhaps - tolerance);
            hits += pick ? 1U : 0U;
            expectSameFromTheProgram(file, i, origin, direction, pick);
        }
        EXPECT_GT(hits, 10U);
        EXPECT_LT(hits, 300U);
    }

    /// Some of the rays through the command line.
    void expectSameFromTheProgram(const std::string& file, int ray, const Eigen::Vector3d& origin,
                                  const Eigen::Vector3d& direction,
                                  const boost::optional<Pick>& pick)
    {
        if (ray % 150 != 0)
        {
            return;
        }
        const auto text = [](const Eigen::Vector3d& v)
        { return json(v.x()).dump() + ',' + json(v.y()).dump() + ',' + json(v.z()).dump(); };
        const json answer =
            runJson({"pick", file, "--origin", text(origin), "--direction", text(direction)});
        ASSERT_EQ(answer["hit"].is_null(), !pick);
        if (pick)
        {
            EXPECT_EQ(answer["hit"]["geometry"], pick->geometryID);
            EXPECT_EQ(answer["hit"]["distance"], pick->distance);
        }
    }
};
} // namespace

TEST_F(PickTool, TellsTheNearestHitOrThatThereIsNone)
{
    const std::string file = write("squares.dae", squares());
    const json near = runJson({"pick", file, "--origin", "0.75,0.25,5", "--direction", "0,0,-20"});
    EXPECT_EQ(near["hit"]["geometry"], "quad");
    EXPECT_EQ(near["hit"]["distance"], 5.0) << "in units of the scene";
    EXPECT_EQ(near["hit"]["point"], json::parse("[0.75, 0.25, 0.0]"));
    EXPECT_EQ(near["hit"]["triangle"],
              json::parse("[[0.0, 0.0, 0.0], [1.0, 0.0, 0.0], [1.0, 1.0, 0.0]]"));
    EXPECT_GT(near["build_seconds"].get<double>(), 0.0);

    const Outcome far = run({"pick", file, "--origin", "2,3,0.5", "--direction", "0,0,-0.001"});
    EXPECT_THAT(far.out, HasSubstr("ray from (2, 3, 0.5) along (0, 0, -0.001)\n"
                                   "  meets \"quad\" at (2, 3, -3), distance 3.5\n"));
    // Above the first square and looking away from both; arguments may begin with a minus.
    const Outcome away = run({"pick", file, "--origin", "-2,3,0.5", "--direction=-1,0,0"});
    EXPECT_EQ(away.status, 0) << away.err;
    EXPECT_THAT(away.out, HasSubstr("  meets nothing\n"));
    const std::string empty = write("empty.dae", visualScene(""));
    EXPECT_EQ(runJson({"pick", empty, "--origin", "0,0,0", "--direction", "0,0,1"})["hit"],
              nullptr);
}

TEST_F(PickTool, AgreesWithTestingEveryTriangle)
{
    for (const std::string& file : wholeDocuments({"room.dae", "seesaw.dae"}))
    {
        compare(file);
    }
}

TEST_F(PickTool, WrongUseIsRefused)
{
    const std::string file = write("squares.dae", squares());
    expectRefused({
        {{"pick", file, "--origin", "0,0,0"}, 2, "--direction is required"},
        {{"pick", file, "--direction", "0,0,1"}, 2, "--origin is required"},
        {{"pick", file, "--origin", "0,0", "--direction", "0,0,1"}, 2, "is not X,Y,Z"},
        {{"pick", file, "--origin", "0,0,0,", "--direction", "0,0,1"}, 2, "is not X,Y,Z"},
        {{"pick", file, "--origin", "0,0,0,0", "--direction", "0,0,1"}, 2, "is not X,Y,Z"},
        {{"pick", file, "--origin", "0,nan,0", "--direction", "0,0,1"}, 2, "is not X,Y,Z"},
        {{"pick", file, "--origin", "", "--direction", "0,0,1"}, 2, "is not X,Y,Z"},
        {{"pick", file, "--origin", "0,0,0", "--direction", "0,0,0"}, 2, "has no length"},
    });
}
} // namespace velmoran::examples::test
