#pragma once

#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "tests/scene/Numbers.h"
#include "tests/scene/SceneUnderTest.h"

#include <Eigen/Geometry>

#include <cmath>
#include <utility>

namespace velmoran::scene
{
using Points = std::vector<Eigen::Vector3f>;
using Influences = std::vector<std::pair<int, float>>; ///< joint index, weight

inline StreamPtr makeFloats(const std::string& id, int stride, const std::vector<float>& data)
{
    const StreamPtr stream = boost::make_shared<Stream>(id, stride, true);
    stream->setData(data);
    stream->setCount(static_cast<int>(data.size()) / stride);
    return stream;
}

inline StreamPtr makeNames(const std::string& id, const std::vector<std::string>& names)
{
    const StreamPtr stream = boost::make_shared<Stream>(id, 1, true);
    stream->setNameList(names);
    return stream;
}

inline std::vector<float> flat(const Points& points)
{
    std::vector<float> floats;
    for (const Eigen::Vector3f& point : points)
    {
        floats.insert(floats.end(), point.data(), point.data() + 3);
    }
    return floats;
}

inline Eigen::Vector3f worldPositionOf(const NodePtr& node)
{
    return node->getCombinedTransformations().topRightCorner<3, 1>();
}

/// Gives a skin its streams, of the IDs "names", "matrices" and "weights", and takes its inputs
/// from them.
inline void setStreams(const SkinPtr& skin, const std::vector<StreamPtr>& streams)
{
    skin->setStreams(streams);
    skin->setJointsInput("JOINT", "names");
    skin->setJointsInput("INV_BIND_MATRIX", "matrices");
    skin->setVertexWeightsInput("JOINT", "names");
    skin->setVertexWeightsInput("WEIGHT", "weights");
}

/// A scene with a mesh whose vertices are `positions`.
inline SceneManagerPtr makeJointsScene(const Points& positions)
{
    const SceneManagerPtr scene = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    const MeshPtr mesh = boost::make_shared<Mesh>("joints", "");
    mesh->addVerticesMapping(StreamMapping(POSITION, makeFloats("p", 3, flat(positions)), 0));
    scene->getGeometryManager()->addGeometry(mesh);
    return scene;
}

/// A scene with an avatar: the node "human-template" carries it, its joints are "sacrum" >
/// "spine" > "head" and "sacrum" > "leg", and each is bound where it stands. A vertex
/// stands beside each joint, carried by this, and a last one between spine and head.
struct AvatarUnderTest : SceneUnderTest
{
    explicit AvatarUnderTest(float height = 1.0F)
    {
        addJoint("root", "sacrum", {0.0F, 0.0F, 0.0F});
        addJoint("sacrum", "spine", {0.0F, height, 0.0F});
        addJoint("spine", "head", {0.0F, height, 0.5F * (height - 1.0F)});
        addJoint("sacrum", "leg", {0.2F, -height, 0.0F});
        Points points;
        for (const NodePtr& joint : joints)
        {
            points.push_back(worldPositionOf(joint) + Eigen::Vector3f(0.0F, 0.1F, 0.2F * height));
        }
        points.emplace_back(0.0F, 1.5F * height, 0.1F);
        mesh->addStream(vertices);
        mesh->addVerticesMapping(StreamMapping(POSITION, vertices, 0));
        manager->getGeometryManager()->addGeometry(mesh);
        controller->setSkin(skin);
        manager->addController(controller);
        node->addInstanceController(boost::make_shared<InstanceController>(
            boost::make_shared<InstanceGeometry>(mesh, MaterialPtr()), controller));
        bind(points, {{{0, 1.0F}}, {{1, 1.0F}}, {{2, 1.0F}}, {{3, 1.0F}}, {{1, 0.5F}, {2, 0.5F}}});
    }

    NodePtr addJoint(const std::string& parent, const std::string& id,
                     const Eigen::Vector3f& translation)
    {
        const NodePtr joint = addNode(parent, id);
        joint->setType("JOINT");
        joint->setTranslation(Eigen::Translation3f(translation));
        joints.push_back(joint);
        return joint;
    }

    /// Replaces vertices and influences and binds each joint where it stands.
    void bind(const Points& points, const std::vector<Influences>& influences)
    {
        std::vector<std::string> names;
        std::vector<float> matrices;
        for (const NodePtr& joint : joints)
        {
            names.push_back(joint->getID());
            const auto rows =
                rowByRow(Eigen::Matrix4f(joint->getCombinedTransformations().inverse()));
            matrices.insert(matrices.end(), rows.begin(), rows.end());
        }
        std::vector<float> weights;
        std::vector<unsigned int> vcount;
        std::vector<int> v;
        for (const Influences& ofVertex : influences)
        {
            vcount.push_back(static_cast<unsigned int>(ofVertex.size()));
            for (const auto& [joint, weight] : ofVertex)
            {
                v.insert(v.end(), {joint, static_cast<int>(weights.size())});
                weights.push_back(weight);
            }
        }
        vertices->setData(flat(points));
        setStreams(skin, {makeNames("names", names), makeFloats("matrices", 16, matrices),
                          makeFloats("weights", 1, weights)});
        skin->setVCount(vcount);
        skin->setV(v);
    }

    /// The skinned vertices.
    std::vector<float> pose() const
    {
        return SceneManager::calculateSkinnedVerticesStream(
                   manager, node, vertices, skin, skin->getVertexWeightsInput("JOINT"),
                   skin->getVertexWeightsInput("WEIGHT"), skin->getJointsInput("INV_BIND_MATRIX"),
                   skin->getJointsInput("JOINT"))
            ->getData();
    }

    Points jointPositions() const
    {
        Points positions;
        for (const NodePtr& joint : joints)
        {
            positions.push_back(worldPositionOf(joint));
        }
        return positions;
    }

    std::vector<NodePtr> joints; ///< in the order of their names
    NodePtr node = addNode("root", "human-template");
    StreamPtr vertices = boost::make_shared<Stream>("vertices", 3, true);
    MeshPtr mesh = boost::make_shared<Mesh>("human-template-lib", "");
    SkinPtr skin = boost::make_shared<Skin>(mesh);
    ControllerPtr controller = boost::make_shared<Controller>("controller", "");
};

/// The largest distance of two lists' floats; infinite when one is longer or has a NaN.
inline double distanceOf(const std::vector<float>& a, const std::vector<float>& b)
{
    double distance = a.size() == b.size() ? 0.0 : HUGE_VAL;
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
    {
        const double difference = std::abs(static_cast<double>(a[i]) - static_cast<double>(b[i]));
        distance = difference <= distance ? distance : difference;
    }
    return std::isnan(distance) ? HUGE_VAL : distance;
}
} // namespace velmoran::scene
