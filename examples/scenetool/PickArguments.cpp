#include "examples/scenetool/PickArguments.h"

#include "examples/scenetool/Text.h"

namespace velmoran::examples
{
namespace
{
const char* const PICK_DETAILS =
    R"(The ray is in world space and ends nowhere; both sides of triangles count. Distances are in
units of the scene, whatever the length of the direction. What only a skin places is not met.)";

/// Reads X,Y,Z into `point`.
CLI::Option* addPoint(CLI::App& command, const std::string& name, Eigen::Vector3d& point,
                      const std::string& description)
{
    const auto read = [name, &point](const std::string& text)
    {
        const std::optional<std::vector<double>> numbers = parseNumbers(text, 3);
        if (!numbers)
        {
            throw CLI::ValidationError(name, quoted(text) + " is not X,Y,Z");
        }
        point = Eigen::Vector3d((*numbers)[0], (*numbers)[1], (*numbers)[2]);
        if (!point.cast<float>().allFinite()) // as the library takes them
        {
            throw CLI::ValidationError(name, quoted(text) + " is too large");
        }
    };
    return command.add_option_function<std::string>(name, read, description)
        ->required()
        ->type_name("X,Y,Z");
}
} // namespace

void addPick(CLI::App& app, PickOptions& options)
{
    CLI::App* pick = app.add_subcommand("pick", "Find the nearest triangle that a ray meets");
    pick->footer(PICK_DETAILS);
    pick->add_option("FILE", options.fileName, "COLLADA document")->required();
    addPoint(*pick, "--origin", options.origin, "Where the ray begins");
    addPoint(*pick, "--direction", options.direction, "Where it goes; of any length but 0");
    pick->add_flag("--json", options.asJson, "Write JSON");
    pick->callback(
        [&options]
        {
            if (options.direction.cast<float>().isZero(0.0F))
            {
                throw CLI::ValidationError("--direction", "has no length");
            }
        });
}
} // namespace velmoran::examples
