#pragma once

#include "core/logger/Logger.h"
#include "scene/Export.h"
#include "scene/Forward.h"

#include <map>
#include <string>
#include <vector>

namespace velmoran::scene
{
/// The layers of one scene: names for the small integers that nodes store.
///
/// IDs count up from 0 in the order of adding and stay valid: layers are only removed by
/// an operation that takes back what it added itself. Every registry starts with these:
///
/// | ID | name          | use                             |
/// |----|---------------|---------------------------------|
/// | 0  | "hidden"      | its nodes are not visible       |
/// | 1  | "visible"     | free                            |
/// | 2  | "selected"    | nodes that the user has chosen  |
/// | 3  | "cast_shadow" | nodes that throw shadows        |
/// | 4  | "transparent" | nodes drawn with transparency   |
/// | 5  | "post_render" | nodes of the pass after all     |
///
/// Merging is logged to "SceneManager.log".
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT LayerManager
{
public:
    /// A registry of the six built-in layers.
    LayerManager();

    virtual ~LayerManager();

    LayerManager(const LayerManager&) = delete;
    LayerManager& operator=(const LayerManager&) = delete;

    /// The ID of the layer `name`, which is added when there is none yet.
    int addLayer(std::string name);

    /// Same as `addLayer`: asking for a layer makes it.
    int getLayerID(std::string name);

    /// The name of a layer; "" when there is none with this ID. Constant time.
    std::string getLayerName(int id) const;

    int getLayerCount() const;

    /// Removes the layers with the ID `id` and above, which nothing may use. For operations
    /// that fail after they added layers.
    void removeLayersFrom(int id);

    /// Adds the layers of `other`, in the order of their names, and translates IDs.
    ///
    /// A new name is added as it is, without an entry in the result, even though its
    /// ID may differ: look it up by name. A name that is taken gets an entry from its
    /// ID in `other` to one here: with `discardRepeated` to the layer of that name,
    /// else to one called name + "__renamed__", which is made unless there is one.
    /// An empty handle and this registry itself change nothing, log nothing and give
    /// an empty result.
    std::map<int, int> mergeLayers(const LayerManagerPtr& other, bool discardRepeated);

private:
    core::logger::Logger m_logger;
    std::map<std::string, int> m_layers; ///< name to ID
    std::vector<std::string> m_names;    ///< by ID; its size is the next ID
};
} // namespace velmoran::scene
