#pragma once

#include "examples/scenetool/Console.h"

#include <Eigen/Core>

#include <string>

namespace velmoran::examples
{
struct PickOptions
{
    std::string fileName;
    Eigen::Vector3d origin = Eigen::Vector3d::Zero();
    Eigen::Vector3d direction = Eigen::Vector3d::Zero(); ///< of any length but 0
    bool asJson = false;
};

/// Tells what a ray meets first in a document's scene. Throws `CommandError` when it can't be
/// read.
void runPick(const PickOptions& options, const Console& console);
} // namespace velmoran::examples
