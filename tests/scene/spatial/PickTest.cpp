#include "scene/geometry/ConvexMesh.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Polygon.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/OctreeNode.h"
#include "tests/scene/SceneUnderTest.h"
#include "tests/scene/spatial/Faces.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <list>
#include <numeric>

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3f;
using Elements = std::vector<IPrimitivePtr>;

/// A scene of meshes, and what their faces are in world space.
class PickScene : public ::testing::Test
{
protected:
    /// A mesh of triangles with corners of their own.
    MeshPtr makeMesh(const std::vector<float>& positions)
    {
        m_meshes.emplace_back();
        const OwnedMesh& owned = m_meshes.back();
        owned.mesh->addVerticesMapping(StreamMapping(POSITION, makeStream("p", 3, positions), 0));
        std::vector<unsigned int> indices(positions.size() / 3);
        std::iota(indices.begin(), indices.end(), 0U);
        owned.addTriangles({StreamMapping(VERTEX, StreamPtr(), 0)}, indices);
        return owned.mesh;
    }

    void instance(const NodePtr& node, const IGeometryPtr& geometry)
    {
        node->addInstanceGeometry(boost::make_shared<InstanceGeometry>(geometry, MaterialPtr()));
    }

    void calculate(const NodePtr& node, int maxDepth, int maxPrimitives)
    {
        octree.setSceneNode(node);
        octree.calculate(maxDepth, maxPrimitives);
    }

    /// The nearest of all faces in the scene; -1 for none.
    double distanceByTestingAll(const RayPtr& ray)
    {
        double nearest = -1.0;
        for (const NodePtr& node : root->getNodesBelow())
        {
            for (const InstanceGeometryPtr& used : node->getInstancedGeometries())
            {
                const auto mesh = boost::dynamic_pointer_cast<Mesh>(used->getGeometry());
                for (const IPrimitivePtr& face : mesh->getPrimitive(0)->getPrimitives())
                {
                    face->applyTransform(node->getCombinedTransformations());
                    const double distance = distanceTo(*face, ray);
                    const bool isNearer = nearest < 0.0 || distance < nearest;
                    nearest = distance >= 0.0 && isNearer ? distance : nearest;
                }
            }
        }
        return nearest;
    }

    /// To the plane of a face that the ray meets; -1 when it doesn't.
    static double distanceTo(const IPrimitive& face, const RayPtr& ray)
    {
        if (!face.intersects(ray))
        {
            return -1.0;
        }
        const auto& p = dynamic_cast<const Triangle&>(face).getPositions();
        const Eigen::Vector3d corner = p[0].cast<double>();
        const Eigen::Vector3d normal =
            (p[1].cast<double>() - corner).cross(p[2].cast<double>() - corner);
        const Eigen::Vector3d direction = ray->getDirection().cast<double>().normalized();
        return normal.dot(corner - ray->getOrigin().cast<double>()) / normal.dot(direction);
    }

    /// Picks what testing all faces gives; returns whether there is something.
    bool agreesWithTestingAll(const RayPtr& ray)
    {
        const double wanted = distanceByTestingAll(ray);
        const auto hit = octree.pickNearest(ray);
        EXPECT_EQ(hit.has_value(), wanted >= 0.0);
        if (hit)
        {
            EXPECT_NEAR(hit->distance, wanted, 1e-5);
            EXPECT_NEAR(distanceTo(*hit->element, ray), wanted, 1e-5);
        }
        return hit.has_value();
    }

    SceneUnderTest scene;
    const NodePtr root = scene.manager->getRoot();
    Octree octree;
    Random random;

private:
    std::list<OwnedMesh> m_meshes;
};

TEST_F(PickScene, IsCollectedInWorldSpaceInstanceByInstance)
{
    const MeshPtr mesh = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0});
    const NodePtr left = scene.addNode("root", "left");
    const NodePtr right = scene.addNode("root", "right");
    left->move(-10, 0, 0);
    right->move(10, 0, 0);
    instance(left, mesh);
    instance(right, mesh);
    instance(right, IGeometryPtr());
    instance(right, boost::make_shared<ConvexMesh>("hull", ""));
    octree.calculate(0, 10);
    EXPECT_FALSE(octree.getRoot());
    EXPECT_FALSE(octree.pickNearest(makeRay({10.2F, 0.2F, 5}, {0, 0, -1})));
    calculate(root, 0, 10);
    EXPECT_EQ(octree.getRoot()->getPrimitives().size(), 2U);
    EXPECT_EQ(octree.getRoot()->getBVMax(), Vector3f(11, 1, 0));
    const RayPtr ray = makeRay({10.2F, 0.2F, 5}, {0, 0, -0.5F});
    const auto hit = octree.pickNearest(ray);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->geometry, mesh);
    EXPECT_EQ(hit->element, octree.getRoot()->getPrimitives()[1]);
    EXPECT_EQ(hit->distance, 5.0F); // in world units, whatever the direction's length
    EXPECT_TRUE(hit->element->intersects(ray));
    EXPECT_FALSE(octree.intersectRay(ray));
    EXPECT_FALSE(octree.getRoot()->intersectRay(ray));
    EXPECT_FALSE(octree.pickNearest(RayPtr()));
    EXPECT_FALSE(octree.pickNearest(makeRay({10.2F, 0.2F, 5}, {0, 0, 0})));
    // What was calculated is answered until the next calculation.
    octree.setSceneNode(left);
    EXPECT_TRUE(octree.pickNearest(ray));
    octree.calculate(0, 10);
    EXPECT_FALSE(octree.pickNearest(ray));
    EXPECT_TRUE(octree.pickNearest(makeRay({-9.8F, 0.2F, 5}, {0, 0, -1})));
}

TEST_F(PickScene, AgreesWithTestingEveryFace)
{
    // The second instance is turned, so that the root's bounds don't enclose the scene.
    const MeshPtr mesh = makeMesh(random.soup(400, 0.1F));
    instance(root, mesh);
    const NodePtr turned = scene.addNode("root", "turned");
    turned->rotate(Eigen::AngleAxisf(2.5F, Vector3f(1, 2, 3).normalized()).toRotationMatrix());
    turned->move(0.5F, 0, 0);
    instance(turned, mesh);
    octree.setSceneNode(root);
    for (const int maxPrimitives : {10000, 8, 0})
    {
        octree.calculate(5, maxPrimitives);
        int hits = 0;
        for (int i = 0; i < 150; ++i)
        {
            const Vector3f origin = random.point(i % 2 == 0 ? 3.0F : 0.5F);
            Vector3f direction = random.point(1.0F) - origin;
            direction[i % 3] = i % 5 == 0 ? -0.0F : direction[i % 3]; // along planes
            hits += agreesWithTestingAll(makeRay(origin, direction)) ? 1 : 0;
            ASSERT_FALSE(HasFailure()) << "ray " << i;
        }
        EXPECT_GT(hits, 30);
    }
}

// Cells leave out faces by a rougher test than that of the face.
TEST_F(PickScene, AgreesWithTheFaceAtItsEdgesWhateverTheScale)
{
    std::size_t rays = 0;
    std::size_t hits = 0;
    for (const float scale : {1e-37F, 1e-20F, 1e-9F, 1e-3F, 1.0F, 1e5F, 1e9F, 1e18F, 1e36F})
    {
        SCOPED_TRACE(scale);
        for (int i = 0; i < 150; ++i)
        {
            const Vector3f at = (i % 3 == 0 ? 100.0F : 0.0F) * random.point(1.0F);
            const float size = i % 5 == 0 ? 1e-4F : 1.0F;
            Eigen::Matrix3f corners; // in columns
            corners << random.point(size), random.point(size), random.point(size);
            corners = scale * (corners.colwise() + at);
            const NodePtr node = boost::make_shared<Node>(scene.manager);
            instance(node, makeMesh({corners.data(), corners.data() + 9}));
            calculate(node, 0, 10);
            const IPrimitivePtr face = octree.getRoot()->getPrimitives().at(0);
            for (int j = 0; j < 8; ++j)
            {
                const Vector3f corner = corners.col(j % 3);
                const float along = 0.3F * static_cast<float>(j - 1); // a bit beyond the ends
                const Vector3f target = corner + along * (corners.col((j + 1) % 3) - corner);
                const Vector3f origin = scale * (at + random.point(10.0F));
                const float stretch = scale < 1.0F && j % 2 == 0 ? 1e30F : 1e-2F;
                const RayPtr ray = makeRay(origin, stretch * (target - origin));
                const bool wanted = face->intersects(ray);
                ASSERT_EQ(octree.pickNearest(ray).has_value(), wanted) << i << ", ray " << j;
                hits += wanted ? 1 : 0;
                ++rays;
            }
        }
    }
    EXPECT_GT(hits, rays / 5);
    EXPECT_LT(hits, rays / 2);
}

TEST_F(PickScene, FindsFacesOfAFlatSceneAlongItsPlanes)
{
    std::vector<float> positions;
    for (int i = 0; i < 64; ++i)
    {
        const auto x = static_cast<float>(i % 8);
        const auto y = static_cast<float>(i / 8);
        positions.insert(positions.end(), {x, y, 0, x + 1, y, 0, x, y + 1, 0});
    }
    instance(root, makeMesh(positions));
    calculate(root, 6, 2);
    for (int i = 0; i < 64; ++i)
    {
        // A corner where six faces meet, or fewer: the first of them.
        const auto x = static_cast<float>(i % 8);
        const auto y = static_cast<float>(i / 8);
        const auto hit = octree.pickNearest(makeRay({x, y, -2}, {0, -0.0F, 1}));
        ASSERT_TRUE(hit) << x << ", " << y;
        EXPECT_EQ(hit->distance, 2.0F);
        const Vector3f first(y > 0 || x == 0 ? x : x - 1, std::max(y - 1, 0.0F), 0);
        const Vector3f corner = dynamic_cast<const Triangle&>(*hit->element).getPositions()[0];
        EXPECT_EQ(corner, first);
    }
    EXPECT_FALSE(octree.pickNearest(makeRay({0.9F, 0.9F, -2}, {0, 0, 1}))) << "between faces";
    EXPECT_FALSE(octree.pickNearest(makeRay({-1, 0.5F, 0}, {1, 0, 0}))) << "within the plane";
}

/// An upright square of edge 2 that only tells whether it is met.
class Target : public IPrimitive
{
public:
    Vector3f getFaceNormal() const override { return {0, 0, 3}; }
    void applyTransform(const Eigen::Matrix4f& matrix) override { m_z += matrix(2, 3); }
    std::vector<VertexPtr> getVertexArray() const override { return {makeVertex(1, 1, m_z)}; }
    bool intersects(const RayPtr& ray) const override
    {
        return ray->getOrigin().head<2>().cwiseAbs().maxCoeff() <= 1.0F;
    }
    bool intersects(const Vector3f& min, const Vector3f& max) const override
    {
        return min.z() <= m_z && max.z() >= m_z;
    }

private:
    float m_z = 0.0F;
};

/// Polygons, and one target after them.
class TargetPrimitive : public PolygonMeshPrimitive
{
public:
    using PolygonMeshPrimitive::PolygonMeshPrimitive;

    std::vector<IPrimitivePtr> getPrimitives() const override
    {
        return {boost::make_shared<Polygon>(), IPrimitivePtr(), boost::make_shared<Target>()};
    }
};

TEST_F(PickScene, IsFoundBesideFacesWithoutFiniteBounds)
{
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    instance(root, makeMesh(random.soup(200, 0.3F)));
    instance(scene.addNode("root", "far"),
             makeMesh({0, 0, 0, INFINITE, 0, 0, 0, 1, 0, 3e38F, 3e38F, 3e38F, 3.1e38F, 3e38F, 3e38F,
                       3e38F, 3.1e38F, 3e38F}));
    calculate(root, 6, 4);
    for (int i = 0; i < 100; ++i)
    {
        const Vector3f origin = random.point(2.0F);
        agreesWithTestingAll(makeRay(origin, random.point(1.0F) - origin));
        ASSERT_FALSE(HasFailure()) << "ray " << i;
    }
}

TEST_F(PickScene, IsFoundWhereCellsHaveNoCentre)
{
    std::vector<float> positions;
    for (int i = 0; i < 6; ++i)
    {
        const float z = 1e36F * static_cast<float>(i);
        positions.insert(positions.end(), {0, 0, z, 2e37F, 0, z, 0, 2e37F, z});
    }
    root->move(3e38F, 3e38F, 3e38F);
    instance(root, makeMesh(positions));
    calculate(root, 3, 2);
    EXPECT_TRUE(octree.pickNearest(makeRay({3.05e38F, 3.05e38F, 0}, {0, 0, 1})));
    EXPECT_FALSE(octree.pickNearest(makeRay({3.05e38F, 2.9e38F, 0}, {0, 0, 1})));
}

TEST_F(PickScene, AsksElementsOfOtherKindsButNoPolygons)
{
    const MeshPtr mesh = makeMesh({-9, -9, -9, -8, -9, -9, -9, -8, -9, 9, 9, 9, 9, 9, 8, 9, 8, 9});
    mesh->addPrimitive(boost::make_shared<TargetPrimitive>(mesh, std::vector<StreamMapping>()));
    root->move(0, 0, 4);
    instance(root, mesh);
    ::testing::internal::CaptureStdout();
    calculate(root, 0, 1);
    const std::string polygon = "Polygon::intersects() not implemented yet!\n";
    std::string wanted = "Polygon::applyTransform() not implemented yet!\n";
    for (int octant = 0; octant < 8; ++octant)
    {
        wanted += polygon;
    }
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), wanted);
    EXPECT_EQ(octree.getRoot()->getChildAt(1)->getPrimitives().size(), 1U); // at z = 4, the middle
    ::testing::internal::CaptureStdout();
    const auto hit = octree.pickNearest(makeRay({0.5F, -0.5F, 10}, {0, 0, -2}));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->distance, 6.0F);
    EXPECT_TRUE(boost::dynamic_pointer_cast<Target>(hit->element));
}

TEST_F(PickScene, MayBeDeep)
{
    NodePtr node = root;
    for (int i = 0; i < 100000; ++i)
    {
        const NodePtr child = boost::make_shared<Node>(scene.manager);
        child->addNode(NodePtr());
        node->addNode(child);
        node = child;
    }
    root->move(0, 0, 7);
    instance(node, makeMesh({-1, -1, 0, 1, -1, 0, 0, 1, 0}));
    calculate(root, 4, 4);
    const auto hit = octree.pickNearest(makeRay({0, 0, 0}, {0, 0, 1}));
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->distance, 7.0F);
}
} // namespace
} // namespace velmoran::scene
