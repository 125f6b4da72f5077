#include "examples/scenetool/MergeReport.h"

#include "examples/scenetool/SceneFacts.h"
#include "examples/scenetool/Text.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"

#include <algorithm>
#include <array>
#include <map>

namespace velmoran::examples
{
namespace
{
using scene::SceneManagerPtr;
using Names = std::vector<std::string>;

constexpr std::array<const char*, 6> KINDS = {"geometries", "images", "effects",
                                              "materials",  "layers", "nodes"};
constexpr std::size_t NODES = 5;
constexpr int BUILT_IN_LAYERS = 6;
constexpr std::size_t MAX_LINES = 3;

template <typename List, typename Getter>
Names idsOf(const List& items, Getter getID)
{
    Names ids;
    for (const auto& item : items)
    {
        ids.push_back(((*item).*getID)());
    }
    return ids;
}

Names layersOf(const SceneManagerPtr& scene, int first)
{
    Names names;
    const auto layers = scene->getLayerManager();
    for (int id = first; !layers->getLayerName(id).empty(); ++id)
    {
        names.push_back(layers->getLayerName(id));
    }
    return names;
}

/// The identifiers of each kind, in the order of `KINDS`.
std::vector<Names> identifiersOf(const SceneManagerPtr& scene)
{
    return {scene->getGeometryManager()->getIDs(),
            idsOf(scene->getImageLibrary(), &scene::Image::getID),
            idsOf(ownEffects(scene), &scene::Effect::getID),
            idsOf(ownMaterials(scene), &scene::Material::getMaterialID),
            layersOf(scene, 0),
            idsOf(scene->getNodeArray(), &scene::Node::getID)};
}

/// How often each name is still to be expected.
class Tally
{
public:
    explicit Tally(const Names& names)
    {
        for (const std::string& name : names)
        {
            ++m_counts[name];
        }
    }

    /// Takes one `name` out; false when there is none.
    bool take(const std::string& name)
    {
        const auto found = m_counts.find(name);
        if (found == m_counts.end() || found->second == 0)
        {
            return false;
        }
        --found->second;
        return true;
    }

private:
    std::map<std::string, std::size_t> m_counts;
};

/// `id` without the suffix "__renamed__" or "__renamed_OID<number>__"; "" when it has
/// none.
std::string withoutSuffix(const std::string& id)
{
    const std::string mark = "__renamed_";
    const std::size_t at = id.rfind(mark);
    if (at == std::string::npos)
    {
        return "";
    }
    std::string rest = id.substr(at + mark.size());
    if (rest.compare(0, 3, "OID") == 0)
    {
        const std::size_t end = rest.find_first_not_of("0123456789", 3);
        rest = end == std::string::npos || end == 3 ? "" : rest.substr(end + 1);
    }
    return rest == "_" ? id.substr(0, at) : "";
}

/// Writes "<count> <what>  <names>"; nothing when there are no names.
void printNames(std::string& kind, const std::string& what, const Names& names, std::ostream& out)
{
    if (names.empty())
    {
        return;
    }
    const std::string head = "  " + padRight(kind, 11) + padLeft(std::to_string(names.size()), 6) +
                             ' ' + padRight(what, 9) + "  ";
    out << head << wrapNames(names, head.size(), MAX_LINES) << '\n';
    kind.clear(); // only in front of the first line
}

void printChanges(const Changes& changes, bool joins, std::ostream& out)
{
    Names renamed;
    for (const auto& [before, after] : changes.renamed)
    {
        renamed.push_back(before + " -> " + after);
    }
    std::string kind = changes.kind;
    printNames(kind, "added", changes.added, out);
    printNames(kind, "renamed", renamed, out);
    printNames(kind, joins ? "joined" : "discarded", changes.discarded, out);
}

void printNotMerged(const SceneManagerPtr& incoming, std::ostream& out)
{
    Names parts;
    const auto add = [&](std::size_t count, const char* singular, const char* plural)
    {
        if (count > 0)
        {
            parts.push_back(countText(count, singular, plural));
        }
    };
    add(incoming->getCameraCount(), "camera", "cameras");
    add(incoming->getLightLibrary().size(), "light", "lights");
    add(incoming->getControllersLibrary().size(), "controller", "controllers");
    add(incoming->getAnimationsLibrary().size(), "animation", "animations");
    add(incoming->getPhysicsModelLibrary().size(), "physics model", "physics models");
    add(incoming->getPhysicsSceneLibrary().size(), "physics scene", "physics scenes");
    if (!parts.empty())
    {
        out << "  not merged  " << wrapNames(parts, 14, 1) << " (merging never takes these)\n";
    }
}
} // namespace

Changes classify(const std::string& kind, const Names& before, const Names& after, Names incoming)
{
    Changes changes;
    changes.kind = kind;
    Tally known(before);
    Tally expected(incoming);
    Names added;
    for (const std::string& id : after)
    {
        if (known.take(id))
        {
            continue;
        }
        const std::string old = withoutSuffix(id);
        if (expected.take(id))
        {
            changes.added.push_back(id);
        }
        else if (!old.empty() && expected.take(old))
        {
            changes.renamed.emplace_back(old, id);
        }
        else
        {
            changes.added.push_back(id);
        }
    }
    incoming.erase(std::remove_if(incoming.begin(), incoming.end(),
                                  [&](const std::string& id) { return !expected.take(id); }),
                   incoming.end());
    changes.discarded = std::move(incoming);
    return changes;
}

MergeReport::MergeReport(const SceneManagerPtr& base, const SceneManagerPtr& incoming)
    : m_base(base), m_incoming(incoming), m_before(identifiersOf(base))
{
}

void MergeReport::print(bool joinsNodes, std::ostream& out) const
{
    std::vector<Names> incoming = identifiersOf(m_incoming);
    const std::vector<Names> after = identifiersOf(m_base);
    for (std::size_t i = 0; i < KINDS.size(); ++i)
    {
        Changes changes = classify(KINDS[i], m_before[i], after[i], incoming[i]);
        if (changes.kind == "layers")
        {
            const Names builtIn = layersOf(m_incoming, 0);
            const auto end = builtIn.begin() + BUILT_IN_LAYERS;
            Names& discarded = changes.discarded;
            discarded.erase(std::remove_if(discarded.begin(), discarded.end(),
                                           [&](const std::string& name) {
                                               return std::find(builtIn.begin(), end, name) != end;
                                           }),
                            discarded.end());
        }
        printChanges(changes, joinsNodes && i == NODES, out);
    }
    printNotMerged(m_incoming, out);
}
} // namespace velmoran::examples
