#include "examples/scenetool/MeshCommand.h"

#include "examples/scenetool/MeshFaces.h"
#include "examples/scenetool/MeshReport.h"
#include "examples/scenetool/ObjOutput.h"
#include "examples/scenetool/Progress.h"
#include "examples/scenetool/Text.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"

#include <boost/pointer_cast.hpp>

#include <filesystem>

namespace velmoran::examples
{
namespace
{
constexpr std::size_t MAX_TRIANGLES = 64000000;

std::vector<scene::MeshPtr> requireMeshes(const LoadedScene& loaded)
{
    std::vector<scene::IGeometryPtr> geometries;
    loaded.scene->getGeometryManager()->getGeometries(geometries);
    std::vector<scene::MeshPtr> meshes;
    for (const scene::IGeometryPtr& geometry : geometries)
    {
        if (const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry))
        {
            meshes.push_back(mesh);
        }
    }
    if (meshes.empty())
    {
        throw CommandError(onOneLine(loaded.fileName) + " holds no mesh");
    }
    return meshes;
}

/// Each subdivision makes four triangles of one.
void checkResult(const std::vector<scene::MeshPtr>& meshes, unsigned int subdivisions)
{
    std::size_t triangles = 0;
    for (const scene::MeshPtr& mesh : meshes)
    {
        for (const scene::IMeshPrimitivePtr& primitive : mesh->getMeshPrimitives())
        {
            triangles += canBeEdited(*mesh) ? countTriangles(*primitive) : 0;
        }
    }
    if (triangles > MAX_TRIANGLES >> (2 * subdivisions))
    {
        throw CommandError("--subdivide " + std::to_string(subdivisions) +
                           " would make more than " + std::to_string(MAX_TRIANGLES) +
                           " triangles of " + std::to_string(triangles));
    }
}

void warnAboutMesh(const scene::SceneManager& scene, const scene::MeshPtr& mesh,
                   const MeshEdits& edits, const Console& console)
{
    const bool isEdited = edits.subdivisions > 0 || edits.normals;
    if (isEdited && !canBeEdited(*mesh))
    {
        warn(quoted(mesh->getID()) + " has polygons, which can't be edited; it stays as it is",
             console);
    }
    const std::size_t skins = findSkinsOf(scene, mesh).size();
    if (edits.subdivisions > 0 && skins > 1)
    {
        warn(quoted(mesh->getID()) + " has " + std::to_string(skins) +
                 " skins, of which only the first is refined along",
             console);
    }
}

std::vector<MeshChange> editMeshes(const LoadedScene& loaded, const MeshOptions& options,
                                   const Console& console)
{
    const std::vector<scene::MeshPtr> meshes = requireMeshes(loaded);
    checkResult(meshes, options.edits.subdivisions);
    for (const scene::MeshPtr& mesh : meshes)
    {
        warnAboutMesh(*loaded.scene, mesh, options.edits, console);
    }
    Progress progress(console.errIsTerminal ? &console.err : nullptr);
    const scene::SceneLock lock(loaded.scene);
    std::vector<MeshChange> changes;
    for (const scene::MeshPtr& mesh : meshes)
    {
        progress.setTask("Editing " + onOneLine(mesh->getID()));
        changes.push_back(editMesh(*loaded.scene, mesh, options.edits));
    }
    return changes;
}

std::string describeEdits(const MeshEdits& edits)
{
    std::string text;
    if (edits.subdivisions > 0)
    {
        text += ", subdivided " + countText(edits.subdivisions, "time", "times");
    }
    return text + (edits.normals ? ", normals computed anew" : "");
}

void writeJson(const MeshOptions& options, const std::vector<MeshChange>& changes,
               std::ostream& out)
{
    Json json = {{"file", std::filesystem::path(options.fileName).filename().string()},
                 {"subdivisions", options.edits.subdivisions},
                 {"normals", options.edits.normals}};
    json.update(collectChanges(changes));
    // Documents may hold identifiers that are not UTF-8.
    out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}
} // namespace

void runMesh(const MeshOptions& options, const Console& console)
{
    const LoadedScene loaded = openScene(options.fileName, console, options.reading);
    const std::vector<MeshChange> changes = editMeshes(loaded, options, console);
    if (options.asJson)
    {
        writeJson(options, changes, console.out);
    }
    else
    {
        console.out << onOneLine(options.fileName) << describeEdits(options.edits) << '\n';
        printChanges(changes, console.out);
    }
    if (!options.objFile.empty())
    {
        writeObjFile(loaded.scene, options.objFile, console);
    }
}
} // namespace velmoran::examples
