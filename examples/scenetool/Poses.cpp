#include "examples/scenetool/Poses.h"

#include "examples/scenetool/SceneLoader.h"
#include "examples/scenetool/Text.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <algorithm>
#include <unordered_map>

namespace velmoran::examples
{
namespace
{
constexpr std::size_t MAX_NODES = 40; ///< shown to people at each time

void printMatrix(const Eigen::Matrix4f& matrix, std::ostream& out)
{
    for (int row = 0; row < 4; ++row)
    {
        out << "  ";
        for (int column = 0; column < 4; ++column)
        {
            out << padLeft(shortNumber(matrix(row, column)), 10);
        }
        out << '\n';
    }
}
} // namespace

PoseSample samplePose(const scene::SceneManagerPtr& scene, const std::vector<scene::NodePtr>& nodes,
                      double time)
{
    const scene::NodePtr root = scene->getRoot();
    const std::vector<Eigen::Matrix4f> worlds = root->getCombinedTransformationsBelow();
    std::unordered_map<const scene::Node*, std::size_t> places;
    for (const scene::NodePtr& node : root->getNodesBelow())
    {
        places.emplace(node.get(), places.size());
    }
    PoseSample sample{time, nodes, {}};
    for (const scene::NodePtr& node : nodes)
    {
        sample.worlds.push_back(worlds[places.at(node.get())]);
    }
    return sample;
}

std::vector<scene::NodePtr> findNodes(const scene::SceneManagerPtr& scene,
                                      const std::vector<std::string>& ids,
                                      const std::string& fileName)
{
    std::vector<scene::NodePtr> nodes;
    for (const std::string& id : ids)
    {
        nodes.push_back(scene->getNodeByID(id));
        if (!nodes.back())
        {
            throw CommandError("no node " + quoted(id) + " in " + onOneLine(fileName));
        }
    }
    return nodes;
}

Json collectPose(const PoseSample& sample)
{
    Json nodes = Json::array();
    for (std::size_t i = 0; i < sample.nodes.size(); ++i)
    {
        nodes.push_back({{"node", sample.nodes[i]->getID()},
                         {"local", matrixRows(sample.nodes[i]->getTransformations())},
                         {"world", matrixRows(sample.worlds[i])}});
    }
    return {{"time", sample.time}, {"nodes", std::move(nodes)}};
}

void printPose(const PoseSample& sample, std::ostream& out)
{
    out << shortNumber(sample.time) << " s\n";
    const std::size_t shown = std::min(sample.nodes.size(), MAX_NODES);
    for (std::size_t i = 0; i < shown; ++i)
    {
        out << "  " << onOneLine(sample.nodes[i]->getID()) << '\n';
        printMatrix(sample.worlds[i], out);
    }
    if (sample.nodes.size() > shown)
    {
        out << "  ... and " << sample.nodes.size() - shown << " more\n";
    }
}
} // namespace velmoran::examples
