#pragma once

#include "scene/manager/SceneManager.h"

namespace velmoran::scene
{
/// Holds the scene lock of a scene, and the scene, for as long as it lives.
///
/// While it lives no controller updates the scene. Made and destroyed on one thread;
/// not where the thread holds that lock already.
class SceneLock
{
public:
    /// Locks `scene`, which is not empty.
    explicit SceneLock(const boost::shared_ptr<SceneManager>& scene) : m_scene(scene)
    {
        m_scene->lockScene();
    }

    ~SceneLock() { m_scene->unlockScene(); }

    SceneLock(const SceneLock&) = delete;
    SceneLock& operator=(const SceneLock&) = delete;

private:
    const boost::shared_ptr<SceneManager> m_scene;
};
} // namespace velmoran::scene
