#include "bench/RatioRows.h"

namespace velmoran::bench
{
namespace
{
constexpr std::int64_t MILLION = 1000000;

// Why a row may miss what is wanted.
constexpr const char* INSERTED =
    "Callgrind counts 130 instructions for each tuple, for absl's row 189, for "
    "meshoptimizer's 195. Ours waits for memory twice, for its table and then for the tuple "
    "in the stream's data, and grows both: 1.0 to 1.4 and 0.7 to 0.9 in runs of an hour. "
    "`insertValues` takes the tuples together.";
constexpr const char* MEMORY =
    "Drifts with the speed of the memory, which others on this machine use, too. In two whole "
    "runs on different days: insertValues 1.0 and 1.3 times the limit; refinement 0.36 and "
    "0.65, with three streams 1.0 and 1.7 times CGAL; merging 1.8 and 2.6, with clashes 5.4 and "
    "7.3 times OpenSceneGraph.";
constexpr const char* SLOT =
    "Three quarters of the time store equal normals once, and wait for memory; the range "
    "shows how much that drifts.";
constexpr const char* SKINNED =
    "Callgrind counts 161 instructions for each vertex against 71: influences stand in "
    "lists of any length, and a new stream is made.";
constexpr const char* INFLUENCES =
    "Callgrind counts three times the instructions for four times the influences: the "
    "rest is waiting for longer lists; 4.8 in an earlier run of the same code.";
constexpr const char* PLAYED =
    "Callgrind counts 285 instructions for each node and turn against the limit's 317. "
    "107 of ours test the pose and write it into the node, which the limit does not.";
constexpr const char* CELLS =
    "Ours stores 2.7 entries for each triangle in lists all over the memory, whose speed "
    "drifts as the range shows.";
constexpr const char* RAYS =
    "0.38 to 0.52 in single runs on a machine that rests; the range shows how much that "
    "drifts.";
constexpr const char* TEXTS =
    "The call takes both texts by value. Of some 530 instructions without a listener 370 "
    "are the caller's copies; the rest is a tenth of what is left with one.";

const std::vector<RatioRow> ROWS = {
    {"insertValue/ours", "insertValue/limit", MILLION, 0, 0},
    {"insertValue/ours", "insertValue/meshoptimizer", MILLION, 0.8, 6.5, INSERTED},
    {"insertValue/ours", "insertValue/absl::flat_hash_map", MILLION, 1.25, 0, INSERTED},
    {"insertValue/ours", "insertValue/absl::flat_hash_map, growing", MILLION, 0, 0},
    {"insertValue/ours", "insertValue/std::unordered_map", MILLION, 0, 0},
    {"insertValue/ours", "insertValue/std::unordered_map, growing", MILLION, 0, 0},
    {"insertValue/ours", "insertValue/std::map", MILLION, 0, 0},
    {"insertValue/ours", "insertValue/linear scan", 5000, 0, 0},
    {"insertValue/ours", "insertValue/linear scan", 20000, 0, 0},
    {"insertValues/ours", "insertValue/limit", MILLION, 1.2, 0, MEMORY},
    {"insertValues/ours", "insertValue/absl::flat_hash_map", MILLION, 0.7, 6.5},

    {"normals/ours, with the vertices", "normals/limit", MILLION, 1.4, 0},
    {"normals/ours, with the vertices", "normals/OpenMesh update_normals", MILLION, 0.35, 6.5},
    {"normals/ours, with the vertices", "normals/CGAL compute_vertex_normals", MILLION, 0, 0},
    {"normals/ours, with the vertices", "normals/Assimp GenSmoothNormals", MILLION, 0, 0},
    {"normals/ours, with the vertices", "normals/an object for each triangle", MILLION, 0, 0},
    {"normals/ours, in a slot of their own", "normals/limit", MILLION, 0, 0},
    {"normals/ours, in a slot of their own", "normals/OpenMesh update_normals", MILLION, 1, 6.5,
     SLOT},
    {"normals/ours, in a slot of their own", "normals/CGAL compute_vertex_normals", MILLION, 0, 0},
    {"normals/ours, in a slot of their own", "normals/Assimp GenSmoothNormals", MILLION, 0, 0},
    {"normals/ours, in a slot of their own", "normals/an object for each triangle", MILLION, 0, 0},
    {"triangles/ours, all held", "triangles/limit", 250000, 0, 0},
    {"triangles/ours, one by one and summed", "triangles/limit", 250000, 0, 0},

    {"subdivision/ours, positions", "subdivision/limit", 250000, 0, 0},
    {"subdivision/ours, positions", "subdivision/CGAL", 250000, 0.45, 6.5, MEMORY},
    {"subdivision/ours, positions", "subdivision/OpenMesh LoopT", 250000, 0, 0},
    {"subdivision/ours, positions", "subdivision/absl::flat_hash_map of edges", 250000, 0, 0},
    {"subdivision/ours, positions", "subdivision/std::set and std::map", 250000, 0, 0},
    {"subdivision/ours, normals and texture coordinates", "subdivision/limit", 250000, 0, 0},
    {"subdivision/ours, normals and texture coordinates", "subdivision/CGAL", 250000, 1.25, 6.5,
     MEMORY},
    {"subdivision/ours, normals and texture coordinates", "subdivision/OpenMesh LoopT", 250000, 0,
     0},
    {"subdivision/ours, normals and texture coordinates",
     "subdivision/absl::flat_hash_map of edges", 250000, 0, 0},
    {"subdivision/ours, normals and texture coordinates", "subdivision/std::set and std::map",
     250000, 0, 0},
    {"subdivision/ours, skinned", "subdivision/ours, positions", 250000, 0, 6.5},
    {"subdivision/ours, fan", "subdivision/ours, positions", 250000, 0, 6.5},

    {"skinning/ours", "skinning/limit", 25000, 0, 0},
    {"skinning/ours", "skinning/Ogre, into a buffer that is there", 25000, 1.7, 6, SKINNED},
    {"skinning/ours", "skinning/a product for each influence", 25000, 0, 0},
    {"skinning/ours", "skinning/limit", 100000, 2, 0},
    {"skinning/ours", "skinning/Ogre, into a buffer that is there", 100000, 2.3, 6, SKINNED},
    {"skinning/ours", "skinning/osgAnimation RigTransformSoftware", 100000, 0, 0},
    {"skinning/ours", "skinning/a product for each influence", 100000, 0, 0},
    {"skinning/ours", "skinning/limit", 400000, 0, 0},
    {"skinning/ours", "skinning/Ogre, into a buffer that is there", 400000, 1.7, 6, SKINNED},
    {"skinning/ours", "skinning/osgAnimation RigTransformSoftware", 400000, 0, 0},
    {"skinning/ours", "skinning/a product for each influence", 400000, 0, 0},
    {"skinning/ours, by influences", "skinning/ours, by influences", 4, 0, 5, INFLUENCES},
    {"replaceJoints/ours, by joints", "replaceJoints/limit", 150, 0, 6},
    {"replaceJoints/ours, by vertices", "replaceJoints/ours, by vertices", 20000, 0, 1.5},
    {"morph/ours, by joints", "morph/limit, by joints", 150, 0, 6},
    {"morph/ours, by vertices", "morph/limit, by vertices", 20000, 0, 6},

    {"play/ours, unheard", "play/limit", 1000, 0.65, 0, PLAYED},
    {"play/ours, unheard", "play/OpenSceneGraph", 1000, 0.05, 0},
    {"play/ours, unheard", "play/two decompositions for each node", 1000, 0, 0},
    {"play/ours, into a map", "play/limit", 1000, 3.5, 0},
    {"play/ours, heard", "play/ours, unheard", 1000, 0, 0},
    {"play/ours, 10,000 keys", "play/ours, 100 keys", 40, 1.5, 0},
    {"seek/ours, 10,000 keys", "seek/ours, 100 keys", 40, 0, 0},

    {"octree/ours", "octree/limit", 200000, 0, 0},
    {"octree/ours", "octree/CGAL AABB_tree build", 200000, 1.2, 6.5, CELLS},
    {"octree/ours", "octree/shared handles, eight box tests", 200000, 0.3, 0, CELLS},
    {"octree/ours", "octree/Embree build, low quality", 200000, 0, 0},
    {"octree/ours", "octree/Embree build, medium quality", 200000, 0, 0},
    {"octree/ours", "octree/OpenSceneGraph KdTree build", 200000, 0, 0},
    {"octree/ours", "octree/Bullet quantised BVH build", 200000, 0, 0},
    {"octree/ours", "octree/FCL OBBRSS build", 200000, 0, 0},
    {"pick/ours", "pick/limit", 200000, 0, 0},
    {"pick/ours", "pick/CGAL AABB_tree nearest hit", 200000, 0.5, 6.5, RAYS},
    {"pick/ours", "pick/Embree", 200000, 0, 0},
    {"pick/ours", "pick/OpenSceneGraph KdTree", 200000, 0, 0},
    {"pick/ours", "pick/Bullet quantised BVH", 200000, 0, 0},

    {"build/ours", "build/limit", 100000, 0, 0},
    {"build/ours", "build/OpenSceneGraph", 100000, 0, 6.5},
    {"build/ours", "build/Assimp", 100000, 0, 0},
    {"getNodeByID/ours", "getNodeByID/limit", 100000, 0, 0},
    {"getNodeByID/ours", "getNodeByID/OpenSceneGraph visitor", 100000, 0.01, 0},
    {"getNodeByID/ours", "getNodeByID/Assimp FindNode", 100000, 0, 0},
    {"getNodeByID/ours, first 10,000 after a change", "getNodeByID/OpenSceneGraph visitor", 100000,
     0, 0},
    {"combined matrices/ours, together", "combined matrices/limit, together", 100000, 0, 0},
    {"combined matrices/ours, together", "combined matrices/Ogre update", 100000, 0.9, 6.5},
    {"combined matrices/ours, together", "combined matrices/OpenSceneGraph visitor", 100000, 0, 0},
    {"combined matrices/ours, one by one", "combined matrices/limit, one by one", 100000, 0, 0},
    {"combined matrices/ours, one by one", "combined matrices/OpenSceneGraph node paths", 100000, 0,
     0},
    {"deep copy/ours, node by node", "deep copy/limit", 100000, 0, 0},
    {"deep copy/ours, node by node", "deep copy/OpenSceneGraph", 100000, 1, 6.5,
     "Callgrind counts some 2,100 instructions for each node against 1,900: ours also makes a new "
     "identifier (270) and asks whether anyone listens to the addition (310). A node takes 592 "
     "bytes against 504."},
    {"deep copy/ours, node by node", "deep copy/Assimp", 100000, 0, 0},
    {"deep copy/ours, by mergeSceneGraph", "deep copy/OpenSceneGraph", 100000, 0, 6.5},
    {"merge/ours, no clash", "merge/limit, no clash", 100000, 0, 0},
    {"merge/ours, no clash", "merge/OpenSceneGraph deep copy", 100000, 2.5, 6, MEMORY},
    {"merge/ours, no clash", "merge/Assimp copy", 100000, 0, 0},
    {"merge/ours, no clash", "merge/Assimp MergeScenes", 100000, 0, 0},
    {"merge/ours, no clash", "merge/a search for each name", 500, 0, 0},
    {"merge/ours, no clash", "merge/a search for each name", 2000, 0, 0},
    {"merge/ours, into an empty scene", "merge/OpenSceneGraph deep copy", 100000, 2.5, 6},
    {"merge/ours, every identifier clashes", "merge/OpenSceneGraph deep copy", 100000, 6, 6,
     MEMORY},
    {"merge/ours, every identifier clashes, logging off", "merge/limit, every identifier clashes",
     100000, 0, 0},
    {"merge/ours, every identifier clashes, logging off", "merge/OpenSceneGraph deep copy", 100000,
     6, 6.5},

    {"event/ours, heard by reference", "event/limit", MILLION, 0, 0},
    {"event/ours, heard by reference", "event/Boost.Signals2 by type and reference", MILLION, 0.6,
     6.5},
    {"event/ours, heard by reference", "event/direct call", MILLION, 0, 0},
    {"event/ours, heard", "event/limit", MILLION, 0, 0},
    {"event/ours, heard", "event/Boost.Signals2 by type", MILLION, 1, 6.5},
    {"event/ours, heard", "event/Boost.Signals2 by type, dummy mutex", MILLION, 0, 0},
    {"event/ours, heard", "event/Boost.Signals2 without look-up", MILLION, 0, 0},
    {"event/ours, heard", "event/libsigc++ by type", MILLION, 0, 0},
    {"event/ours, heard", "event/handlers and texts copied", MILLION, 0, 0},
    {"event/ours, from texts, heard", "event/Boost.Signals2 by type, from texts", MILLION, 0, 0},
    {"event/ours, unheard", "event/ours, heard", MILLION, 0.2, 0},
    {"event/ours, from texts, unheard", "event/ours, from texts, heard", MILLION, 0.2, 0, TEXTS},
    {"matrix text/ours", "matrix text/limit", 10000, 0, 0},
    {"matrix text/ours", "matrix text/snprintf", 10000, 0.35, 0},
    {"setTranslation/ours, unheard", "setTranslation/limit", 100000, 0, 0},
    {"setTranslation/ours, unheard", "setTranslation/ours, heard", 100000, 0, 0},
};
} // namespace

const std::vector<RatioRow>& ratioRows()
{
    return ROWS;
}
} // namespace velmoran::bench
