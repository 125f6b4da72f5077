#include "examples/scenetool/GeometryFacts.h"

#include "examples/scenetool/MeshFaces.h"
#include "scene/geometry/ConvexMesh.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/manager/SceneManager.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <cctype>

namespace velmoran::examples
{
namespace
{
using scene::IGeometryPtr;
using scene::MeshPtr;
using scene::SceneManagerPtr;
using scene::StreamPtr;

void addCount(Json& counts, const std::string& kind, std::size_t count)
{
    counts[kind] = counts.value(kind, std::size_t{0}) + count;
}

Json collectSources(const MeshPtr& mesh)
{
    Json sources = Json::array();
    for (const StreamPtr& stream : mesh->getStreams())
    {
        sources.push_back({{"id", stream->getID()},
                           {"stride", stream->getStride()},
                           {"count", tupleCount(stream)},
                           {"array_length", stream->getData().size()}});
    }
    return sources;
}

/// Number, bounds and sum of the positions; bounds and sum are null without any.
void collectPositions(const MeshPtr& mesh, Json& facts)
{
    const auto* mapping = scene::findStreamMapping(mesh->getVertices(), scene::POSITION);
    const StreamPtr stream = mapping != nullptr ? mapping->getStream() : StreamPtr();
    const std::size_t count = stream ? tupleCount(stream) : 0;
    facts["position_source"] = stream ? Json(stream->getID()) : Json(nullptr);
    facts["position_count"] = count;
    std::vector<double> low;
    std::vector<double> high;
    std::vector<double> sum;
    if (count > 0)
    {
        const auto stride = static_cast<std::size_t>(stream->getStride());
        const std::vector<float>& data = stream->getData();
        const std::size_t used = std::min<std::size_t>(stride, 3);
        low.assign(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(used));
        high = low;
        sum.assign(used, 0.0);
        for (std::size_t i = 0; i < count * stride; i += stride)
        {
            for (std::size_t axis = 0; axis < used; ++axis)
            {
                const double value = data[i + axis];
                low[axis] = std::min(low[axis], value);
                high[axis] = std::max(high[axis], value);
                sum[axis] += value;
            }
        }
    }
    facts["position_min"] = low.empty() ? Json(nullptr) : Json(low);
    facts["position_max"] = high.empty() ? Json(nullptr) : Json(high);
    facts["position_sum"] = sum.empty() ? Json(nullptr) : Json(sum);
}

void collectKind(const MeshPtr& mesh, Json& facts)
{
    const auto hull = boost::dynamic_pointer_cast<scene::ConvexMesh>(mesh);
    facts["kind"] = hull ? "convex_mesh" : "mesh";
    if (hull && hull->getConvexHullOf())
    {
        facts["convex_hull_of"] = hull->getConvexHullOf()->getID();
    }
}

void collectFaces(const MeshPtr& mesh, Json& facts)
{
    std::size_t triangles = 0;
    Json faces = Json::object();
    for (const auto& primitive : mesh->getMeshPrimitives())
    {
        triangles += countTriangles(*primitive);
        addCount(faces, kindText(*primitive), primitive->getCount());
    }
    facts["triangle_count"] = triangles;
    facts["faces_by_kind"] = std::move(faces);
}

Json collectGeometry(const IGeometryPtr& geometry)
{
    Json facts;
    facts["id"] = geometry->getID();
    facts["name"] = textOrNull(geometry->getName());
    const MeshPtr mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry);
    if (mesh)
    {
        collectKind(mesh, facts);
        collectPositions(mesh, facts);
        facts["sources"] = collectSources(mesh);
        collectFaces(mesh, facts);
    }
    return facts;
}

} // namespace

Json collectGeometries(const SceneManagerPtr& scene)
{
    std::vector<IGeometryPtr> geometries;
    scene->getGeometryManager()->getGeometries(geometries);
    Json facts = Json::array();
    for (const IGeometryPtr& geometry : geometries)
    {
        facts.push_back(collectGeometry(geometry));
    }
    return facts;
}

Json collectTotals(const Json& geometries)
{
    std::size_t positions = 0;
    std::size_t triangles = 0;
    Json faces = Json::object();
    for (const Json& geometry : geometries)
    {
        positions += geometry.value("position_count", std::size_t{0});
        triangles += geometry.value("triangle_count", std::size_t{0});
        const Json own = geometry.value("faces_by_kind", Json::object());
        for (const auto& [kind, count] : own.items())
        {
            addCount(faces, kind, count);
        }
    }
    return {
        {"positions", positions}, {"triangles", triangles}, {"faces_by_kind", std::move(faces)}};
}

std::string kindText(const scene::IMeshPrimitive& primitive)
{
    std::string text = scene::IMeshPrimitive::typeToString(primitive.getType());
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}
} // namespace velmoran::examples
