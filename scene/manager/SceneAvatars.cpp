// Avatars: posing, reshaping and blending of skinned meshes.

#include "scene/geometry/Stream.h"
#include "scene/manager/SceneManager.h"

namespace velmoran::scene
{
StreamPtr SceneManager::calculateSkinnedVerticesStream(const SceneManagerPtr&, const NodePtr&,
                                                       const StreamPtr& vertices, const SkinPtr&,
                                                       const StreamPtr&, const StreamPtr&,
                                                       const StreamPtr&, const StreamPtr&)
{
    return vertices;
}

void SceneManager::transverseSceneForJoints(const NodePtr&, std::vector<NodePtr>&,
                                            std::vector<int>&)
{
}

void SceneManager::replaceJoints(const SceneManagerPtr&) {}
void SceneManager::morph(const SceneManagerPtr&, float) {}
void SceneManager::replaceSharedStreams(const StreamPtr&, const StreamPtr&) {}
void SceneManager::replaceGeometry(const std::string&, const IGeometryPtr&) {}
} // namespace velmoran::scene
