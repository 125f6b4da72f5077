#include "examples/scenetool/SkinArguments.h"

namespace velmoran::examples
{
namespace
{
const char* const SKIN_DETAILS =
    R"(Vertices are in world space: the library's skinning has the world matrix of the mesh's node
in it. The displacement is how far a vertex is from where it was bound to the skeleton.)";
} // namespace

void addSkin(CLI::App& app, SkinOptions& options)
{
    CLI::App* skin = app.add_subcommand("skin", "Skin the meshes of a document");
    skin->footer(SKIN_DETAILS);
    skin->add_option("FILE", options.fileName, "COLLADA document")->required();
    skin->add_option("--time", options.time,
                     "Pose the document by its animations, played together; as it is without it")
        ->check(secondsFrom(0.0))
        ->type_name("SECONDS");
    CLI::Option* json =
        skin->add_flag("--json", options.asJson, "Write JSON, with all skinned vertices");
    CLI::Option* obj = skin->add_option("--obj", options.objFile,
                                        "Write the scene in this pose as Wavefront OBJ, with the "
                                        "materials' diffuse colours in an MTL file beside it");
    CLI::Option* png =
        skin->add_option("--png", options.pngFile, "Write a picture of that, seen from the front");
    json->excludes(obj)->excludes(png);
    skin->callback(
        [&options]
        {
            refuseOverwriting(options.fileName, options.objFile);
            refuseOverwriting(options.fileName, options.pngFile, "--png");
        });
}
} // namespace velmoran::examples
