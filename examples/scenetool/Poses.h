#pragma once

#include "examples/scenetool/SceneFacts.h"

#include <Eigen/Core>

#include <ostream>
#include <vector>

namespace velmoran::examples
{
/// Some nodes of a scene and where they stand at one time.
struct PoseSample
{
    double time = 0.0; ///< seconds
    std::vector<scene::NodePtr> nodes;
    std::vector<Eigen::Matrix4f> worlds; ///< the world matrix of each node
};

/// Takes the world matrices of `nodes` as they are now. Linear in the scene, whose tree
/// must hold the nodes.
PoseSample samplePose(const scene::SceneManagerPtr& scene, const std::vector<scene::NodePtr>& nodes,
                      double time);

/// The nodes with these IDs. Throws `CommandError`, naming the first one that is missing.
std::vector<scene::NodePtr> findNodes(const scene::SceneManagerPtr& scene,
                                      const std::vector<std::string>& ids,
                                      const std::string& fileName);

/// "time" and "nodes", each with "node" (its ID), "local" and "world".
Json collectPose(const PoseSample& sample);

/// The time, and below it each node with its world matrix; of many nodes the first few.
void printPose(const PoseSample& sample, std::ostream& out);
} // namespace velmoran::examples
