#include "examples/scenetool/MeshArguments.h"

namespace velmoran::examples
{
namespace
{
const char* const MESH_DETAILS =
    R"(All meshes of the document are edited; a skin is refined along with its mesh. Each
subdivision makes four triangles of one, in its plane. With both edits, the normals are those of
the refined mesh. Areas are in the meshes' own spaces, without the scales of nodes. Meshes with
polygons (--keep-polygons) are told of, but not edited.)";

constexpr unsigned int MAX_SUBDIVISIONS = 12;
} // namespace

void addMesh(CLI::App& app, MeshOptions& options)
{
    CLI::App* mesh =
        app.add_subcommand("mesh", "Refine the meshes of a document, compute their normals");
    mesh->footer(MESH_DETAILS);
    mesh->add_option("FILE", options.fileName, "COLLADA document")->required();
    mesh->add_flag("--normals", options.edits.normals, "Compute the normals of vertices anew");
    mesh->add_option("--subdivide", options.edits.subdivisions, "Refine so many times")
        ->check(CLI::Range(0U, MAX_SUBDIVISIONS))
        ->type_name("TIMES");
    CLI::Option* obj = mesh->add_option("--obj", options.objFile,
                                        "Write the scene as Wavefront OBJ, with the materials' "
                                        "diffuse colours in an MTL file beside it");
    mesh->add_flag("--json", options.asJson, "Write JSON")->excludes(obj);
    addReading(*mesh, options.reading);
    mesh->callback([&options] { refuseOverwriting(options.fileName, options.objFile); });
}
} // namespace velmoran::examples
