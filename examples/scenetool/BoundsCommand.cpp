#include "examples/scenetool/BoundsCommand.h"

#include "examples/scenetool/BoundsFacts.h"
#include "examples/scenetool/Progress.h"
#include "examples/scenetool/Table.h"
#include "examples/scenetool/Text.h"

#include <algorithm>
#include <filesystem>

namespace velmoran::examples
{
namespace
{
constexpr std::size_t MAX_BOUNDS = 40; ///< of geometries and of nodes

using Row = std::vector<std::string>;

Row makeRow(const std::string& head, const Box& box)
{
    return {head, pointText(box.low.cast<double>()), pointText(box.high.cast<double>()),
            pointText(box.center.cast<double>())};
}

void addMore(std::size_t count, std::vector<Row>& rows)
{
    if (count > MAX_BOUNDS)
    {
        rows.push_back({"  ... and " + std::to_string(count - MAX_BOUNDS) + " more"});
    }
}

void printText(const BoundsOptions& options, const SceneBounds& bounds, std::ostream& out)
{
    std::vector<Row> rows = {{"Geometries", "low", "high", "centre"}};
    for (std::size_t i = 0; i < std::min(bounds.geometries.size(), MAX_BOUNDS); ++i)
    {
        const GeometryBounds& geometry = bounds.geometries[i];
        rows.push_back(makeRow("  " + onOneLine(geometry.id), geometry.box));
        for (const PrimitiveBounds& primitive : geometry.primitives)
        {
            rows.push_back(makeRow("    " + primitive.kind + ' ' + onOneLine(primitive.material),
                                   primitive.box));
        }
    }
    addMore(bounds.geometries.size(), rows);
    rows.push_back({"Nodes"});
    for (std::size_t i = 0; i < std::min(bounds.nodes.size(), MAX_BOUNDS); ++i)
    {
        rows.push_back(makeRow("  " + onOneLine(bounds.nodes[i].id), bounds.nodes[i].box));
    }
    addMore(bounds.nodes.size(), rows);
    rows.push_back(bounds.scene ? makeRow("Scene", *bounds.scene) : Row{"Scene", "empty"});
    out << onOneLine(options.fileName) << '\n';
    printTable(rows, {LEFT, LEFT, LEFT, LEFT}, out);
}
} // namespace

void runBounds(const BoundsOptions& options, const Console& console)
{
    const LoadedScene loaded = openScene(options.fileName, console, options.reading);
    SceneBounds bounds;
    {
        Progress progress(console.errIsTerminal ? &console.err : nullptr);
        progress.setTask("Measuring " + onOneLine(options.fileName));
        // People are shown the first few nodes only.
        bounds = takeBounds(loaded.scene, options.asJson ? ALL_NODES : MAX_BOUNDS);
    }
    if (!options.asJson)
    {
        printText(options, bounds, console.out);
        return;
    }
    Json json = {{"file", std::filesystem::path(options.fileName).filename().string()}};
    json.update(collectBounds(bounds));
    // Documents may hold identifiers that are not UTF-8.
    console.out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}
} // namespace velmoran::examples
