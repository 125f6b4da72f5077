#include "examples/scenetool/MeshReport.h"

#include "examples/scenetool/Table.h"
#include "examples/scenetool/Text.h"
#include "scene/geometry/Mesh.h"

#include <algorithm>

namespace velmoran::examples
{
namespace
{
constexpr std::size_t MAX_MESHES = 40; ///< shown to people

/// What a row is about, as one number for each column.
struct Sizes
{
    std::size_t trianglesBefore = 0;
    std::size_t trianglesAfter = 0;
    double areaBefore = 0.0;
    double areaAfter = 0.0;

    void add(const Sizes& other)
    {
        trianglesBefore += other.trianglesBefore;
        trianglesAfter += other.trianglesAfter;
        areaBefore += other.areaBefore;
        areaAfter += other.areaAfter;
    }
};

Sizes sizesOf(const PrimitiveSize& before, const PrimitiveSize& after)
{
    return {before.triangles, after.triangles, before.area, after.area};
}

Sizes sizesOf(const MeshChange& change)
{
    return {countTriangles(change.before), countTriangles(change.after), sumArea(change.before),
            sumArea(change.after)};
}

/// The times of some meshes, of which each may be missing.
std::optional<double> addTimes(const std::optional<double>& a, const std::optional<double>& b)
{
    return a && b ? *a + *b : a ? a : b;
}

Json orNull(const std::optional<double>& seconds)
{
    return seconds ? Json(*seconds) : Json(nullptr);
}

void addSizes(const Sizes& sizes, Json& json)
{
    json["triangles_before"] = sizes.trianglesBefore;
    json["triangles_after"] = sizes.trianglesAfter;
    json["area_before"] = sizes.areaBefore;
    json["area_after"] = sizes.areaAfter;
}

Json collectChange(const MeshChange& change)
{
    Json primitives = Json::array();
    for (std::size_t i = 0; i < change.before.size(); ++i)
    {
        Json primitive = {{"kind", change.before[i].kind}, {"material", change.before[i].material}};
        addSizes(sizesOf(change.before[i], change.after[i]), primitive);
        primitives.push_back(std::move(primitive));
    }
    Json json = {{"id", change.mesh->getID()},
                 {"name", textOrNull(change.mesh->getName())},
                 {"skin", textOrNull(change.skinID)},
                 {"primitives", std::move(primitives)}};
    addSizes(sizesOf(change), json);
    json["subdivision_seconds"] = orNull(change.subdivisionSeconds);
    json["normals_seconds"] = orNull(change.normalsSeconds);
    return json;
}

std::vector<std::string> makeRow(const std::string& head, const Sizes& sizes,
                                 const std::optional<double>& seconds)
{
    const auto change = [](const std::string& before, const std::string& after)
    { return before == after ? before : before + " -> " + after; };
    return {head,
            change(std::to_string(sizes.trianglesBefore), std::to_string(sizes.trianglesAfter)),
            change(shortNumber(sizes.areaBefore), shortNumber(sizes.areaAfter)),
            seconds ? durationText(*seconds) : ""};
}

void addRows(const MeshChange& change, std::vector<std::vector<std::string>>& rows)
{
    const std::string skin = change.skinID.empty() ? "" : ", skin " + onOneLine(change.skinID);
    rows.push_back(makeRow("  " + onOneLine(change.mesh->getID()) + skin, sizesOf(change),
                           addTimes(change.subdivisionSeconds, change.normalsSeconds)));
    for (std::size_t i = 0; i < change.before.size(); ++i)
    {
        const PrimitiveSize& primitive = change.before[i];
        rows.push_back(makeRow("    " + primitive.kind + ' ' + onOneLine(primitive.material),
                               sizesOf(primitive, change.after[i]), {}));
    }
}
} // namespace

Json collectChanges(const std::vector<MeshChange>& changes)
{
    Json geometries = Json::array();
    Sizes sizes;
    std::optional<double> subdivision;
    std::optional<double> normals;
    for (const MeshChange& change : changes)
    {
        geometries.push_back(collectChange(change));
        sizes.add(sizesOf(change));
        subdivision = addTimes(subdivision, change.subdivisionSeconds);
        normals = addTimes(normals, change.normalsSeconds);
    }
    Json totals;
    addSizes(sizes, totals);
    totals["subdivision_seconds"] = orNull(subdivision);
    totals["normals_seconds"] = orNull(normals);
    return {{"geometries", std::move(geometries)}, {"totals", std::move(totals)}};
}

void printChanges(const std::vector<MeshChange>& changes, std::ostream& out)
{
    std::vector<std::vector<std::string>> rows = {{"Geometries", "triangles", "area", "time"}};
    Sizes sizes;
    std::optional<double> seconds;
    for (std::size_t i = 0; i < changes.size(); ++i)
    {
        if (i < MAX_MESHES)
        {
            addRows(changes[i], rows);
        }
        sizes.add(sizesOf(changes[i]));
        seconds =
            addTimes(seconds, addTimes(changes[i].subdivisionSeconds, changes[i].normalsSeconds));
    }
    if (changes.size() > MAX_MESHES)
    {
        rows.push_back({"  ... and " + std::to_string(changes.size() - MAX_MESHES) + " more"});
    }
    rows.push_back(makeRow("  in all", sizes, seconds));
    printTable(rows, {LEFT, RIGHT, RIGHT, RIGHT}, out);
}
} // namespace velmoran::examples
