#include "examples/scenetool/MorphCommand.h"

#include "core/event/EventManager.h"
#include "examples/scenetool/DeferredOutput.h"
#include "examples/scenetool/MorphStep.h"
#include "examples/scenetool/ObjOutput.h"
#include "examples/scenetool/PngFile.h"
#include "examples/scenetool/Progress.h"
#include "examples/scenetool/Skinning.h"
#include "examples/scenetool/Text.h"

#include <boost/make_shared.hpp>

#include <filesystem>

namespace velmoran::examples
{
namespace
{
void printHead(const LoadedScene& avatar, const LoadedScene& target, const AvatarPose& pose,
               const Console& console)
{
    console.out << "Morphing " << onOneLine(avatar.fileName) << " toward "
                << onOneLine(target.fileName) << ": "
                << countText(pose.vertices.size(), "vertex", "vertices") << ", "
                << countText(pose.joints.size(), "joint", "joints") << '\n';
    warnAboutUnits(avatar, target, console);
    for (const std::string& mismatch : findMismatches(avatar, target))
    {
        warn(onOneLine(mismatch), console);
    }
}

void printMoves(double ratio, const AvatarPose& before, const AvatarPose& after, std::ostream& out)
{
    const double vertices = findLargestDisplacement(before.vertices, after.vertices).distance;
    const double joints = findLargestDisplacement(before.joints, after.joints).distance;
    out << "  ratio " << padRight(shortNumber(ratio), 6) << "  largest displacement of a vertex "
        << shortNumber(vertices) << ", of a joint " << shortNumber(joints) << '\n';
}

/// Makes one model after the other.
class Series
{
public:
    Series(const MorphOptions& options, const Console& console, Progress& progress)
        : m_options(options),
          m_console(console),
          m_progress(progress),
          m_ratios(getMorphRatios(options)),
          m_files(getObjFiles(options))
    {
        m_target = load(options.target);
        printWarnings(m_target, console.err);
    }

    void run()
    {
        for (std::size_t i = 0; i < m_ratios.size(); ++i)
        {
            make(i);
        }
        if (!m_options.pngFile.empty())
        {
            m_progress.setTask("Drawing " + onOneLine(m_options.pngFile));
            writePngFile(m_picture, m_options.pngFile, m_console);
        }
    }

private:
    LoadedScene load(const std::string& fileName)
    {
        m_progress.setTask("Reading " + onOneLine(fileName));
        return loadScene(fileName, boost::make_shared<core::event::EventManager>());
    }

    /// From the document each time: a morph changes the avatar for good.
    void make(std::size_t index)
    {
        const LoadedScene avatar = load(m_options.avatar);
        const AvatarPose before = takeAvatarPose(avatar.scene);
        m_progress.setTask("Morphing, " + std::to_string(index + 1) + " of " +
                           std::to_string(m_ratios.size()));
        if (index == 0)
        {
            printWarnings(avatar, m_console.err);
        }
        morphAvatar(avatar.scene, m_target.scene, m_ratios[index]);
        if (index == 0)
        {
            printHead(avatar, m_target, before, m_console);
        }
        printMoves(m_ratios[index], before, takeAvatarPose(avatar.scene), m_console.out);
        if (!m_files.empty())
        {
            writeObjFile(avatar.scene, m_files[index], m_console);
        }
        if (!m_options.pngFile.empty())
        {
            m_picture.add(avatar.scene);
        }
    }

    const MorphOptions& m_options;
    const Console& m_console;
    Progress& m_progress;
    const std::vector<double> m_ratios;
    const std::vector<std::string> m_files; ///< by model; empty: none is written
    LoadedScene m_target;
    Picture m_picture;
};
} // namespace

std::vector<double> getMorphRatios(const MorphOptions& options)
{
    if (options.steps < 2)
    {
        return {options.ratio};
    }
    std::vector<double> ratios;
    for (std::size_t i = 0; i < options.steps; ++i)
    {
        const double part = static_cast<double>(i) / static_cast<double>(options.steps - 1);
        ratios.push_back(options.ratio * part);
    }
    return ratios;
}

std::vector<std::string> getObjFiles(const MorphOptions& options)
{
    if (options.objFile.empty())
    {
        return {};
    }
    if (options.steps < 2)
    {
        return {options.objFile};
    }
    std::vector<std::string> files;
    const std::size_t digits = std::to_string(options.steps).size();
    for (std::size_t i = 1; i <= options.steps; ++i)
    {
        const std::string number = std::to_string(i);
        std::filesystem::path path(options.objFile);
        const std::string extension = path.extension().string();
        path.replace_extension();
        path += '-' + std::string(digits - number.size(), '0') + number + extension;
        files.push_back(path.string());
    }
    return files;
}

void runMorph(const MorphOptions& options, const Console& console)
{
    const DeferredOutput output(console, true);
    Progress progress(console.errIsTerminal ? &console.err : nullptr);
    Series(options, output.getConsole(), progress).run();
}
} // namespace velmoran::examples
