#pragma once

#include "scene/Forward.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace velmoran::examples
{
/// What became of the identifiers of one kind.
struct Changes
{
    std::string kind; ///< "geometries", "nodes", ...
    std::vector<std::string> added;
    std::vector<std::pair<std::string, std::string>> renamed; ///< old and new
    std::vector<std::string> discarded;
};

/// Sorts out what became of `incoming`, from the identifiers of the scene before and
/// after. Identifiers may repeat in all three lists. A new identifier counts as
/// renamed when it is an incoming one with the suffix that merging gives.
Changes classify(const std::string& kind, const std::vector<std::string>& before,
                 const std::vector<std::string>& after, std::vector<std::string> incoming);

/// Compares a scene before and after another one is merged into it.
class MergeReport
{
public:
    /// Takes down what both scenes hold. The effect, the material and the layers that
    /// every scene has are no news and not counted as discarded.
    MergeReport(const scene::SceneManagerPtr& base, const scene::SceneManagerPtr& incoming);

    /// Writes what was added, renamed and discarded since. Repeated nodes that are not
    /// new joined those present when `joinsNodes` is set, else they were discarded.
    void print(bool joinsNodes, std::ostream& out) const;

private:
    scene::SceneManagerPtr m_base;
    scene::SceneManagerPtr m_incoming;
    std::vector<std::vector<std::string>> m_before; ///< identifiers by kind
};
} // namespace velmoran::examples
