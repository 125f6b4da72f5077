#include "examples/scenetool/BoundsArguments.h"

namespace velmoran::examples
{
namespace
{
const char* const BOUNDS_DETAILS =
    R"(Bounds are as the scene library has them. Those of geometries are in their own space and
have the origin in them; the centre of a geometry is the sum of its primitives' centres. Those of
nodes are in world space: of each geometry below the lowest and the highest corner, moved with
its node, so where nodes are turned they need not enclose it. Nodes without geometry in or below
them are not listed.)";
} // namespace

void addBounds(CLI::App& app, BoundsOptions& options)
{
    CLI::App* bounds =
        app.add_subcommand("bounds", "Show the bounds of geometries, nodes and the scene");
    bounds->footer(BOUNDS_DETAILS);
    bounds->add_option("FILE", options.fileName, "COLLADA document")->required();
    bounds->add_flag("--json", options.asJson, "Write JSON");
    addReading(*bounds, options.reading);
}
} // namespace velmoran::examples
