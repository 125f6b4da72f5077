#include "examples/scenetool/BoundsFacts.h"

#include "examples/scenetool/GeometryFacts.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/pointer_cast.hpp>

#include <unordered_set>

namespace velmoran::examples
{
namespace
{
Eigen::Vector3f toVector(const std::vector<float>& values)
{
    return {values.at(0), values.at(1), values.at(2)};
}

/// Of a geometry or a node.
template <typename Thing>
Box boxOf(Thing& thing)
{
    return {thing.getBVMin(), thing.getBVMax(), thing.getBVCenter()};
}

GeometryBounds takeGeometry(const scene::IGeometryPtr& geometry)
{
    GeometryBounds bounds;
    bounds.id = geometry->getID();
    bounds.box = boxOf(*geometry);
    const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry);
    for (unsigned int i = 0; mesh && i < mesh->getPrimitiveCount(); ++i)
    {
        const scene::IMeshPrimitivePtr primitive = mesh->getPrimitive(i);
        bounds.primitives.push_back(
            {kindText(*primitive),
             primitive->getMaterialSymbol(),
             {toVector(primitive->getBVMin()), toVector(primitive->getBVMax()),
              toVector(primitive->getBVCenter())}});
    }
    return bounds;
}

/// The nodes that have geometry in or below them, in pre-order.
std::vector<scene::NodePtr> findNodes(const scene::NodePtr& root)
{
    const std::vector<scene::NodePtr> nodes = root->getNodesBelow();
    std::unordered_set<const scene::Node*> found;
    for (auto node = nodes.rbegin(); node != nodes.rend(); ++node)
    {
        if (!(*node)->getAllInstancedGeometries().empty() || found.count(node->get()) != 0)
        {
            found.insert(node->get());
            found.insert((*node)->getParent().get());
        }
    }
    std::vector<scene::NodePtr> result;
    for (const scene::NodePtr& node : nodes)
    {
        if (found.count(node.get()) != 0)
        {
            result.push_back(node);
        }
    }
    return result;
}

Json toJson(const Eigen::Vector3f& point)
{
    return {point.x(), point.y(), point.z()};
}

void addBox(const Box& box, Json& json)
{
    json["min"] = toJson(box.low);
    json["max"] = toJson(box.high);
    json["center"] = toJson(box.center);
}

Json collectGeometry(const GeometryBounds& geometry)
{
    Json json = {{"id", geometry.id}};
    addBox(geometry.box, json);
    json["primitives"] = Json::array();
    for (const PrimitiveBounds& primitive : geometry.primitives)
    {
        Json part = {{"kind", primitive.kind}, {"material", primitive.material}};
        addBox(primitive.box, part);
        json["primitives"].push_back(std::move(part));
    }
    return json;
}
} // namespace

SceneBounds takeBounds(const scene::SceneManagerPtr& scene, std::size_t maxNodes)
{
    SceneBounds bounds;
    std::vector<scene::IGeometryPtr> geometries;
    scene->getGeometryManager()->getGeometries(geometries);
    for (const scene::IGeometryPtr& geometry : geometries)
    {
        bounds.geometries.push_back(takeGeometry(geometry));
    }
    const scene::NodePtr root = scene->getRoot();
    for (const scene::NodePtr& node : findNodes(root))
    {
        if (node == root)
        {
            bounds.scene = boxOf(*node);
        }
        else
        {
            const bool isAsked = bounds.nodes.size() < maxNodes;
            bounds.nodes.push_back({node->getID(), isAsked ? boxOf(*node) : Box()});
        }
    }
    return bounds;
}

Json collectBounds(const SceneBounds& bounds)
{
    Json geometries = Json::array();
    for (const GeometryBounds& geometry : bounds.geometries)
    {
        geometries.push_back(collectGeometry(geometry));
    }
    Json nodes = Json::array();
    for (const NodeBounds& node : bounds.nodes)
    {
        Json json = {{"id", node.id}};
        addBox(node.box, json);
        nodes.push_back(std::move(json));
    }
    Json scene;
    if (bounds.scene)
    {
        addBox(*bounds.scene, scene);
    }
    return {{"geometries", std::move(geometries)},
            {"nodes", std::move(nodes)},
            {"scene", std::move(scene)}};
}
} // namespace velmoran::examples
