// Skinning: a sleeve of four points follows an arm of two joints.

#include "core/event/EventManager.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Geometry>
#include <boost/make_shared.hpp>

#include <iostream>

using namespace velmoran;
using namespace velmoran::scene;

namespace
{
NodePtr addJoint(const SceneManagerPtr& scene, const NodePtr& parent, const std::string& id)
{
    const auto joint = boost::make_shared<Node>(scene);
    joint->setID(id);
    joint->setType("JOINT");
    parent->addNode(joint);
    return joint;
}

StreamPtr makeStream(const std::string& id, int stride, const std::vector<float>& data)
{
    const auto stream = boost::make_shared<Stream>(id, stride, true);
    stream->setData(data);
    return stream;
}
} // namespace

int main()
{
    const auto scene = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    const NodePtr shoulder = addJoint(scene, scene->getRoot(), "shoulder");
    const NodePtr elbow = addJoint(scene, shoulder, "elbow");
    elbow->setTranslation(Eigen::Translation3f(1.0F, 0.0F, 0.0F));

    //! [skin]
    const StreamPtr points = makeStream("points", 3, {0, 0, 0, 1, 0, 0, 1.5F, 0, 0, 2, 0, 0});
    const StreamPtr joints = makeStream("joints", 1, {});
    joints->setNameList({"shoulder", "elbow"}); // identifiers of nodes
    const StreamPtr weights = makeStream("weights", 1, {1.0F, 0.5F});
    // Where a joint was when the skin was bound, inverted, row by row.
    const StreamPtr matrices =
        makeStream("matrices", 16, {1, 0, 0, 0,  0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1,
                                    1, 0, 0, -1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});

    const auto skin = boost::make_shared<Skin>(boost::make_shared<Mesh>("sleeve", ""));
    skin->setStreams({joints, weights, matrices});
    skin->setJointsInput("JOINT", "joints");
    skin->setJointsInput("INV_BIND_MATRIX", "matrices");
    skin->setVertexWeightsInput("JOINT", "joints");
    skin->setVertexWeightsInput("WEIGHT", "weights");
    skin->setVCount({1, 2, 1, 1});              // influences of each point
    skin->setV({0, 0, 0, 1, 1, 1, 1, 0, 1, 0}); // joint and weight of each influence
    //! [skin]

    //! [pose]
    elbow->addRotation(
        Eigen::AngleAxisf(0.5F * static_cast<float>(EIGEN_PI), Eigen::Vector3f::UnitZ())
            .toRotationMatrix());
    const StreamPtr posed = SceneManager::calculateSkinnedVerticesStream(
        scene, NodePtr(), points, skin, joints, weights, matrices, joints);
    //! [pose]

    for (std::size_t i = 0; i + 2 < posed->getData().size(); i += 3)
    {
        const Eigen::Map<const Eigen::Vector3f> point(&posed->getData()[i]);
        std::cout << (point.array() * 100.0F).round().transpose() / 100.0F << std::endl;
    }
}
