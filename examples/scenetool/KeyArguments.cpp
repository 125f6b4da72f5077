#include "examples/scenetool/KeyArguments.h"

#include "examples/scenetool/Text.h"

#include <cmath>
#include <utility>

namespace velmoran::examples
{
namespace
{
const char* const KEY_DETAILS =
    R"(Each --time begins a pose: the document's own at that time, its animations played, with
the turns that follow as pairs of --node and --rotate. All nodes are keyed with it, in an
animation of their own, for which their transformations become one matrix each. What was
keyed is shown and played back; the document is left as it is. A stride of two seconds:

  scenetool key avatar.dae --time 0 --time 1 --node l_hip --rotate 1,0,0,-30 \
      --node r_hip --rotate 1,0,0,30 --time 2 --live 4)";

/// Closer to each other, keys replace one another.
constexpr double MIN_DISTANCE = 0.01;

[[noreturn]] void refuse(const std::string& option, const std::string& reason)
{
    throw CLI::ValidationError(option, reason);
}

KeyTurn parseTurn(const std::string& nodeID, const std::string& text)
{
    const std::optional<std::vector<double>> numbers = parseNumbers(text, 4);
    if (!numbers)
    {
        refuse("--rotate", quoted(text) + " is not X,Y,Z,DEGREES");
    }
    const std::vector<double>& values = *numbers;
    const Eigen::Vector3d axis(values[0], values[1], values[2]);
    const double length = axis.stableNorm();
    if (length == 0.0 || !std::isfinite(length))
    {
        refuse("--rotate", quoted(text) + " has no axis to turn about");
    }
    // The angle is reduced first: floats of many turns are coarse.
    return {nodeID, (axis / length).cast<float>(),
            static_cast<float>(std::remainder(values[3], 360.0))};
}

/// Puts the options together in the order in which they were given.
class PoseParser
{
public:
    void addTime(double time)
    {
        expectRotated();
        for (const KeyPose& pose : m_poses)
        {
            if (std::abs(pose.time - time) < MIN_DISTANCE)
            {
                refuse("--time", shortNumber(time) + " is less than " + shortNumber(MIN_DISTANCE) +
                                     " s from another one");
            }
        }
        m_poses.push_back({time, {}});
        m_nodeID.reset();
    }

    void addNode(const std::string& id)
    {
        expectRotated();
        if (m_poses.empty())
        {
            refuse("--node", "comes behind the --time that it is for");
        }
        m_nodeID = id;
        m_isRotated = false;
    }

    void addRotate(const std::string& text)
    {
        if (!m_nodeID)
        {
            refuse("--rotate", "comes behind the --node that it turns");
        }
        m_poses.back().turns.push_back(parseTurn(*m_nodeID, text));
        m_isRotated = true;
    }

    std::vector<KeyPose> finish()
    {
        expectRotated();
        return std::move(m_poses);
    }

private:
    void expectRotated() const
    {
        if (m_nodeID && !m_isRotated)
        {
            refuse("--node", quoted(*m_nodeID) + " is followed by no --rotate");
        }
    }

    std::vector<KeyPose> m_poses;
    std::optional<std::string> m_nodeID; ///< to be turned, of the last pose
    bool m_isRotated = false;
};

/// What an option was given, from its first use on.
class Results
{
public:
    explicit Results(const CLI::Option* option) : m_option(option) {}

    bool isOf(const CLI::Option* option) const { return option == m_option; }

    std::string next() { return m_option->results().at(m_next++); }

private:
    const CLI::Option* m_option;
    std::size_t m_next = 0;
};

std::vector<KeyPose> collectPoses(const CLI::App& key)
{
    PoseParser poses;
    Results times(key.get_option("--time"));
    Results nodes(key.get_option("--node"));
    Results turns(key.get_option("--rotate"));
    for (const CLI::Option* option : key.parse_order())
    {
        if (times.isOf(option))
        {
            poses.addTime(parseNumber(times.next()).value());
        }
        else if (nodes.isOf(option))
        {
            poses.addNode(nodes.next());
        }
        else if (turns.isOf(option))
        {
            poses.addRotate(turns.next());
        }
    }
    return poses.finish();
}
} // namespace

void addKey(CLI::App& app, KeyOptions& options)
{
    CLI::App* key = app.add_subcommand("key", "Pose the nodes of a document and key the poses");
    key->footer(KEY_DETAILS);
    key->add_option("FILE", options.fileName, "COLLADA document")->required();
    // Read by `collectPoses`, which needs their order.
    const auto addRepeatable = [key](const char* name, const char* type, const char* description)
    {
        return key
            ->add_option(name, CLI::callback_t([](const CLI::results_t&) { return true; }),
                         description)
            ->expected(1, CLI::detail::expected_max_vector_size)
            ->allow_extra_args(false)
            ->type_name(type);
    };
    addRepeatable("--time", "SECONDS", "Time of a key; at least 0.01 from the others")
        ->check(secondsFrom(0.0))
        ->required();
    addRepeatable("--node", "ID", "ID of a node to turn at that time");
    addRepeatable("--rotate", "X,Y,Z,DEGREES", "Turn the node about this axis of its own frame");
    key->add_option("--obj", options.objFile,
                    "Write the scene in the last pose given as Wavefront OBJ");
    CLI::Option* live = key->add_option(
        "--live", options.live,
        "Then play the keys over and over on the scene's worker thread for so long");
    live->check(secondsFrom(0.001))->type_name("SECONDS");
    key->callback(
        [key, &options]
        {
            options.poses = collectPoses(*key);
            refuseOverwriting(options.fileName, options.objFile);
        });
}
} // namespace velmoran::examples
