#include "bench/Skins.h"

#include "core/event/EventManager.h"
#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Geometry>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace velmoran::bench
{
using namespace velmoran::scene;

namespace
{
// Of the joints near a vertex, how many carry it; where there are more influences, joints
// come again.
constexpr std::size_t NEAR = 8;

StreamPtr makeStream(const char* id, int stride, const std::vector<float>& data)
{
    const StreamPtr stream = boost::make_shared<Stream>(id, stride, true);
    stream->setData(data);
    return stream;
}

std::vector<float> rowByRow(const std::vector<Eigen::Matrix4f>& matrices)
{
    std::vector<float> rows;
    for (const Eigen::Matrix4f& matrix : matrices)
    {
        const Eigen::Matrix4f transposed = matrix.transpose();
        rows.insert(rows.end(), transposed.data(), transposed.data() + 16);
    }
    return rows;
}

std::vector<Eigen::Matrix4f> worldsOf(const std::vector<Eigen::Matrix4f>& locals)
{
    std::vector<Eigen::Matrix4f> worlds(locals);
    for (std::size_t i = 1; i < worlds.size(); ++i)
    {
        worlds[i] = worlds[i - 1] * locals[i];
    }
    return worlds;
}

/// The matrices by which each joint of the chain is turned against the one before.
std::vector<Eigen::Matrix4f> makeLocals(std::size_t joints, float angle)
{
    std::vector<Eigen::Matrix4f> locals;
    for (std::size_t i = 0; i < joints; ++i)
    {
        const float turn = i % 2 == 0 ? angle : -angle;
        const Eigen::Vector3f offset(0.0F, i == 0 ? 0.0F : 1.0F, 0.0F);
        locals.push_back((Eigen::Translation3f(offset) *
                          Eigen::AngleAxisf(turn, Eigen::Vector3f(1.0F, 0.2F, 0.0F).normalized()))
                             .matrix());
    }
    return locals;
}
} // namespace

std::string FlatSkin::nameOf(std::size_t joint) const
{
    return joint == 0 ? "sacrum" : "joint-" + std::to_string(joint);
}

FlatSkin makeFlatSkin(std::int64_t vertices, std::size_t influences, std::size_t joints)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> part(0.5F, 1.0F);
    FlatSkin skin;
    skin.influences = influences;
    for (std::int64_t i = 0; i < vertices; ++i)
    {
        const float along = static_cast<float>(i * static_cast<std::int64_t>(joints)) /
                            static_cast<float>(vertices);
        skin.positions.insert(skin.positions.end(), {part(random), along, part(random)});
        const auto nearest = static_cast<std::size_t>(along);
        const std::size_t first = std::min(nearest, joints - std::min(joints, NEAR));
        for (std::size_t j = 0; j < influences; ++j)
        {
            skin.joints.push_back(static_cast<int>(first + (random() % 2 + 2 * j) % NEAR));
            skin.weights.push_back(part(random));
        }
        float* const weights = &skin.weights[skin.weights.size() - influences];
        Eigen::Map<Eigen::ArrayXf> all(weights, static_cast<Eigen::Index>(influences));
        all /= all.sum();
    }
    for (const Eigen::Matrix4f& world : worldsOf(makeLocals(joints, 0.0F)))
    {
        skin.boneSpace.emplace_back(world.inverse());
    }
    skin.locals = makeLocals(joints, 0.1F);
    return skin;
}

std::vector<Eigen::Matrix4f> posesOf(const FlatSkin& skin)
{
    std::vector<Eigen::Matrix4f> poses = worldsOf(skin.locals);
    for (std::size_t i = 0; i < poses.size(); ++i)
    {
        poses[i] = Eigen::Matrix4f(poses[i] * skin.boneSpace[i]);
    }
    return poses;
}

std::vector<float> poseFlat(const FlatSkin& skin, const std::vector<Eigen::Matrix4f>& poses)
{
    using Column = Eigen::Array4f;
    std::vector<float> posed(skin.positions.size() + 1); // written four wide
    const int* joint = skin.joints.data();
    const float* weight = skin.weights.data();
    for (std::size_t i = 0; i + 3 < posed.size(); i += 3)
    {
        Column x = Column::Zero();
        Column y = Column::Zero();
        Column z = Column::Zero();
        Column w = Column::Zero();
        for (std::size_t j = 0; j < skin.influences; ++j, ++joint, ++weight)
        {
            const float* const pose = poses[static_cast<std::size_t>(*joint)].data();
            x += *weight * Eigen::Map<const Column>(pose);
            y += *weight * Eigen::Map<const Column>(pose + 4);
            z += *weight * Eigen::Map<const Column>(pose + 8);
            w += *weight * Eigen::Map<const Column>(pose + 12);
        }
        const float* const position = &skin.positions[i];
        Eigen::Map<Column>{&posed[i]} = position[0] * x + position[1] * y + position[2] * z + w;
    }
    posed.pop_back();
    return posed;
}

SkinnedScene::SkinnedScene(const FlatSkin& flat)
    : manager(boost::make_shared<SceneManager>(core::event::EventManagerPtr()))
{
    std::vector<std::string> names;
    NodePtr above = manager->getRoot();
    for (std::size_t i = 0; i < flat.locals.size(); ++i)
    {
        const NodePtr joint = boost::make_shared<Node>(manager);
        names.push_back(flat.nameOf(i));
        joint->setID(names.back());
        joint->setType("JOINT");
        joint->setTransformations(flat.locals[i]);
        above->addNode(joint);
        joints.push_back(joint);
        above = joint;
    }
    vertices = makeStream("vertices", 3, flat.positions);
    const MeshPtr mesh = boost::make_shared<Mesh>("human-template-lib", "");
    mesh->addVerticesMapping(StreamMapping(POSITION, vertices, 0));
    manager->getGeometryManager()->addGeometry(mesh);

    const StreamPtr nameStream = makeStream("names", 1, {});
    nameStream->setNameList(names);
    skin = boost::make_shared<Skin>(mesh);
    skin->setStreams({nameStream, makeStream("matrices", 16, rowByRow(flat.boneSpace)),
                      makeStream("weights", 1, flat.weights)});
    skin->setJointsInput("JOINT", "names");
    skin->setJointsInput("INV_BIND_MATRIX", "matrices");
    skin->setVertexWeightsInput("JOINT", "names");
    skin->setVertexWeightsInput("WEIGHT", "weights");
    skin->setVCount(
        std::vector<unsigned int>(flat.vertexCount(), static_cast<unsigned int>(flat.influences)));
    std::vector<int> v;
    for (std::size_t i = 0; i < flat.joints.size(); ++i)
    {
        v.insert(v.end(), {flat.joints[i], static_cast<int>(i)});
    }
    skin->setV(v);

    const ControllerPtr controller = boost::make_shared<Controller>("controller", "");
    controller->setSkin(skin);
    manager->addController(controller);
    node = boost::make_shared<Node>(manager);
    node->setID("human-template");
    node->addInstanceController(boost::make_shared<InstanceController>(
        boost::make_shared<InstanceGeometry>(mesh, MaterialPtr()), controller));
    manager->getRoot()->addNode(node);
}

StreamPtr SkinnedScene::pose() const
{
    return SceneManager::calculateSkinnedVerticesStream(
        manager, node, vertices, skin, skin->getVertexWeightsInput("JOINT"),
        skin->getVertexWeightsInput("WEIGHT"), skin->getJointsInput("INV_BIND_MATRIX"),
        skin->getJointsInput("JOINT"));
}

double differenceOf(const std::vector<float>& a, const std::vector<float>& b)
{
    constexpr double INFINITE = std::numeric_limits<double>::infinity();
    double largest = a.size() == b.size() ? 0.0 : INFINITE;
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
    {
        const double difference = std::abs(static_cast<double>(a[i]) - static_cast<double>(b[i]));
        largest = difference >= 0.0 ? std::max(largest, difference) : INFINITE;
    }
    return largest;
}
} // namespace velmoran::bench
