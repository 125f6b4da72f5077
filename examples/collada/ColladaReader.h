#pragma once

#include "scene/Forward.h"

#include <string>
#include <vector>

namespace velmoran::examples
{
/// What became of reading a document.
struct ReadResult
{
    bool ok = false;
    std::string error;                 ///< one line: "FILE: <element>: reason"; empty when ok
    std::vector<std::string> warnings; ///< things left out or repaired, same form
};

/// How a document is read.
struct ReadOptions
{
    bool keepPolygons = false; ///< `<polylist>` and `<polygons>` become polygons, not triangles
};

/// Fills a scene from a COLLADA 1.4 or 1.5 document.
///
/// Meant for a new scene, whose default effect and material stay in front of the
/// document's, unless that has its own under their IDs. In a scene with content the
/// libraries, the geometry manager, the root and the animations of the document take
/// the place of the scene's; layers and camera instances are added to its.
///
/// What is read: up axis and unit; images, effects and materials; meshes and convex meshes,
///     with every source as a stream and every primitive as triangles, or as polygons where
///     the options say so; cameras and lights; controllers; animations; physics; the nodes
///     of the visual scene of `<scene>` (else the first one) below a root with that scene's
///     ID and name. A node placed by
///     `<instance_node>` is copied at each use; a node's first use has its IDs, further
///     ones get generated IDs. Nodes without ID keep the library's. Elements may come
///     in any order; `<extra>` and unknown elements are passed over.
/// Materials: an instance binds what its `<bind_material>` says; symbols that this
///     leaves out stay unbound. An instance without `<bind_material>` binds all symbols
///     of its primitives to the material "defaultMaterial", so that they can be bound
///     anew one by one.
/// Skins: the library looks joints up by ID, so the lists of joint names hold the IDs of
///     nodes once an instance is read. A `<Name_array>` has scoped IDs, which are looked for
///     at and below the nodes that the instance's `<skeleton>` elements name, breadth first,
///     one skeleton after the other; without a skeleton in the whole scene. A name that is
///     no scoped ID there but the ID of a node stands for that node, as all names of an
///     `<IDREF_array>` do. Where nodes are copied, the nearest copy is meant. Names that lead
///     to no node are kept, with a warning. An instance whose joints are other nodes than
///     those of an earlier one of its controller gets a copy of the controller with a
///     generated ID. Influences of the bind shape (joint -1) become influences of the root.
/// Morphs: the scene keeps the base shape only.
/// Physics: materials, models and scenes come into the scene's libraries, and the scenes that
///     `<scene>` instances into the list of those. Bodies and constraints have their SIDs for
///     IDs. A shape given by measures is kept as an `AnalyticShape`. An attachment that names
///     no body holds to the world. Targets and parents of instances are the nodes that have
///     their IDs, where nodes are copied the first copy. What the library's classes don't
///     hold is left out.
/// Events: those of the library's operations, once reading has succeeded.
/// Errors: when something is wrong with the document (it is not XML or not COLLADA, a
///     number, index or count is wrong, a reference leads nowhere, nodes instance
///     or hulls enclose themselves), the scene is left as it was. Unresolved textures,
///     targets of channels and SIDs of bodies and constraints that name nothing, key data
///     that can't be played, repeated IDs (the first element counts) and what the scene
///     can't hold are warnings.
/// Threads: not locked; different threads may read into different scenes. Callers hold
///     the scene lock where others read or change the scene.
/// Cost: time and memory in proportion to the document, plus what `<instance_node>`
///     copies, at most a million nodes.
class ColladaReader
{
public:
    /// Reads a file. An empty `scene` is an error.
    ReadResult readFile(const std::string& fileName, const scene::SceneManagerPtr& scene,
                        const ReadOptions& options = {});

    /// Reads the text of a document, which messages call `displayName`.
    ReadResult readText(const std::string& text, const std::string& displayName,
                        const scene::SceneManagerPtr& scene, const ReadOptions& options = {});
};
} // namespace velmoran::examples
