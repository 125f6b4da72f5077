#include "examples/scenetool/InfoCommand.h"

#include "examples/scenetool/AnimationFacts.h"
#include "examples/scenetool/PhysicsFacts.h"
#include "examples/scenetool/Progress.h"
#include "examples/scenetool/SceneFacts.h"
#include "examples/scenetool/SceneLoader.h"
#include "examples/scenetool/Table.h"
#include "examples/scenetool/Text.h"
#include "scene/deform/InstanceController.h"
#include "scene/geometry/IGeometry.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/graph/Camera.h"
#include "scene/graph/Light.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace velmoran::examples
{
namespace
{
constexpr std::size_t MAX_ROWS = 40;  ///< of geometries and of nodes
constexpr std::size_t MAX_DEPTH = 12; ///< indented; deeper nodes stand below these

std::string pointText(const Json& point)
{
    if (!point.is_array())
    {
        return "-";
    }
    std::string text = "(";
    for (const Json& value : point)
    {
        text += (text.size() > 1 ? ", " : "") + shortNumber(value.get<double>());
    }
    return text + ")";
}

void printLibraries(const Json& facts, std::ostream& out)
{
    std::vector<std::pair<std::string, std::vector<std::string>>> rows;
    const auto addRow = [&](const std::string& title, const Json& ids)
    { rows.emplace_back(title, ids.get<std::vector<std::string>>()); };
    const auto addItems = [&](const std::string& title)
    {
        Json ids = Json::array();
        for (const Json& item : facts[title])
        {
            ids.push_back(item["id"]);
        }
        addRow(title, ids);
    };
    addItems("geometries");
    addItems("controllers");
    for (const char* title : {"materials", "effects", "images", "cameras", "lights", "animations"})
    {
        addRow(title, facts["ids"][title]);
    }
    out << "\nLibraries\n";
    for (const auto& [title, ids] : rows)
    {
        const std::string head =
            "  " + padRight(title, 12) + padLeft(std::to_string(ids.size()), 6);
        out << head << (ids.empty() ? "" : "  " + wrapNames(ids, head.size() + 2, 2)) << '\n';
    }
}

using Row = std::vector<std::string>;

/// A row about geometries. A column tells how many polygons the triangles stand for where some
/// are kept.
Row makeRow(const std::string& head, const Json& positions, const Json& triangles,
            const Json& faces, bool hasPolygons)
{
    Row row = {head, positions.dump(), triangles.dump()};
    if (hasPolygons)
    {
        row.push_back(faces.value("polygons", Json(0)).dump());
    }
    return row;
}

void printGeometries(const Json& facts, std::ostream& out)
{
    const Json& geometries = facts["geometries"];
    if (geometries.empty())
    {
        return;
    }
    const Json& totals = facts["totals"];
    const bool hasPolygons = totals["faces_by_kind"].contains("polygons");
    std::vector<Row> rows{{"Geometries", "positions", "triangles"}};
    std::vector<Alignment> columns = {LEFT, RIGHT, RIGHT};
    if (hasPolygons)
    {
        rows.front().emplace_back("polygons");
        columns.push_back(RIGHT);
    }
    rows.front().insert(rows.front().end(), {"low", "high"});
    columns.insert(columns.end(), {LEFT, LEFT});
    const std::size_t shown = std::min(geometries.size(), MAX_ROWS);
    for (std::size_t i = 0; i < shown; ++i)
    {
        const Json& item = geometries[i];
        Row row = makeRow("  " + onOneLine(item["id"]), item.value("position_count", Json(0)),
                          item.value("triangle_count", Json(0)),
                          item.value("faces_by_kind", Json::object()), hasPolygons);
        row.push_back(pointText(item.value("position_min", Json())));
        row.push_back(pointText(item.value("position_max", Json())));
        rows.push_back(std::move(row));
    }
    if (geometries.size() > shown)
    {
        rows.push_back({"  ... and " + std::to_string(geometries.size() - shown) + " more"});
    }
    rows.push_back(makeRow("  in all", totals["positions"], totals["triangles"],
                           totals["faces_by_kind"], hasPolygons));
    out << '\n';
    printTable(rows, columns, out);
}

/// What stands at a node, for people: "joint", geometries, cameras, lights.
std::vector<std::string> describe(const scene::NodePtr& node)
{
    std::vector<std::string> parts;
    if (node->getType() == "JOINT")
    {
        parts.emplace_back("joint");
    }
    const auto addGeometry = [&](const scene::InstanceGeometryPtr& instance, const char* kind)
    {
        if (instance && instance->getGeometry())
        {
            parts.push_back(kind + onOneLine(instance->getGeometry()->getID()));
        }
    };
    for (const auto& instance : node->getInstancedGeometries())
    {
        addGeometry(instance, "geometry ");
    }
    for (const auto& instance : node->getInstancedControllers())
    {
        addGeometry(instance->getInstanceGeometry(), "controlled geometry ");
    }
    for (unsigned int i = 0; i < node->getInstanceCameraCount(); ++i)
    {
        parts.push_back("camera " + onOneLine(node->getInstanceCamera(i)->getID()));
    }
    for (unsigned int i = 0; i < node->getInstanceLightCount(); ++i)
    {
        parts.push_back("light " + onOneLine(node->getInstanceLight(i)->getID()));
    }
    for (const std::string& layer : node->getLayersNames())
    {
        parts.push_back("layer " + onOneLine(layer));
    }
    return parts;
}

void printNodes(const scene::SceneManagerPtr& scene, const Json& counts, std::ostream& out)
{
    const std::vector<scene::NodePtr> nodes = scene->getNodeArray();
    out << "\nNodes  " << nodes.size() - 1 << ", "
        << countText(counts["joint_nodes_expanded"], "of them a joint", "of them joints") << '\n';
    std::unordered_map<const scene::Node*, std::size_t> depths{{nodes.front().get(), 0}};
    const std::size_t shown = std::min(nodes.size() - 1, MAX_ROWS);
    for (std::size_t i = 1; i <= shown; ++i)
    {
        const scene::NodePtr& node = nodes[i];
        const std::size_t depth = depths[node->getParent().get()] + 1;
        depths[node.get()] = depth;
        const std::string head =
            std::string(2 * std::min(depth, MAX_DEPTH), ' ') + onOneLine(node->getID());
        const std::vector<std::string> parts = describe(node);
        out << (parts.empty() ? head : padRight(head, 32) + "  " + wrapNames(parts, 34, 2)) << '\n';
    }
    if (nodes.size() - 1 > shown)
    {
        out << "  ... and " << nodes.size() - 1 - shown << " more\n";
    }
}

void printText(const LoadedScene& loaded, const Json& facts, std::ostream& out)
{
    out << onOneLine(loaded.fileName) << "\n  scene " << quoted(facts["visual_scene"]) << ", "
        << facts["up_axis"].get<std::string>() << ", a unit is "
        << facts["unit_meter"].get<std::string>() << " m\n";
    printLibraries(facts, out);
    if (facts.contains("animation"))
    {
        out << "\nAnimation  " << describeAnimation(facts["animation"]) << '\n';
    }
    const std::string physics = describePhysics(facts["counts"]);
    if (!physics.empty())
    {
        out << "\nPhysics  " << physics << '\n';
    }
    printGeometries(facts, out);
    printNodes(loaded.scene, facts["counts"], out);
}
} // namespace

void runInfo(const InfoOptions& options, const Console& console)
{
    LoadedScene loaded;
    Json facts;
    {
        Progress progress(console.errIsTerminal ? &console.err : nullptr);
        progress.setTask("Reading " + options.fileName);
        loaded = loadScene(options.fileName, {}, options.reading);
        facts = collectFacts(loaded.scene, options.fileName);
    }
    printWarnings(loaded, console.err);
    if (options.asJson)
    {
        // Documents may hold identifiers that are not UTF-8.
        console.out << facts.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
        return;
    }
    printText(loaded, facts, console.out);
}
} // namespace velmoran::examples
