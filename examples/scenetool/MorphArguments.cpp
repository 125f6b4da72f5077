#include "examples/scenetool/MorphArguments.h"

#include "examples/scenetool/Text.h"

namespace velmoran::examples
{
namespace
{
const char* const MORPH_DETAILS =
    R"(An avatar is the geometry "human-template-lib", skinned by the first controller of the node
"human-template", with joints below the node "sacrum". Two of them blend when their vertices
are the same number and their joints have the same IDs. Each model begins with AVATAR as it is
in its document.)";

constexpr std::size_t MAX_STEPS = 1000;

CLI::Validator ratioRange()
{
    const auto check = [](const std::string& text)
    {
        const std::optional<double> value = parseNumber(text);
        const bool fits = value && *value >= 0.0 && *value <= 1.0;
        return fits ? std::string() : quoted(text) + " is no number from 0 to 1";
    };
    return CLI::Validator(check, "");
}

void refuseOverwritingAny(const MorphOptions& options)
{
    for (const std::string& input : {options.avatar, options.target})
    {
        for (const std::string& output : getObjFiles(options))
        {
            refuseOverwriting(input, output);
        }
        refuseOverwriting(input, options.pngFile, "--png");
    }
}
} // namespace

void addMorph(CLI::App& app, MorphOptions& options)
{
    CLI::App* morph = app.add_subcommand("morph", "Blend an avatar with another one");
    morph->footer(MORPH_DETAILS);
    morph->add_option("AVATAR", options.avatar, "COLLADA document with the avatar to change")
        ->required();
    morph->add_option("TARGET", options.target, "COLLADA document with the other one")->required();
    morph
        ->add_option("--ratio", options.ratio,
                     "How much of AVATAR there is: 0 gives the shape of TARGET, 1 its own")
        ->check(ratioRange())
        ->type_name("RATIO")
        ->required();
    morph->add_option("--obj", options.objFile, "Write the model in world space as Wavefront OBJ");
    morph
        ->add_option("--steps", options.steps,
                     "Make a series of so many models, with ratios evenly from 0 to RATIO; the "
                     "name of each OBJ file then has its number in front of the extension")
        ->check(CLI::Range(std::size_t(1), MAX_STEPS))
        ->type_name("N");
    morph->add_option("--png", options.pngFile,
                      "Write a picture of all models side by side, seen from the front");
    morph->callback([&options] { refuseOverwritingAny(options); });
}
} // namespace velmoran::examples
