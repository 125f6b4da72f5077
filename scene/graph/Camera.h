#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <boost/weak_ptr.hpp>

#include <string>

namespace velmoran::scene
{
/// A viewpoint's optics; nodes place it in the scene.
///
/// Ownership: held by the camera library of its scene and by the nodes that place
///     it. It remembers the scene weakly and raises nothing once that is gone.
/// Events: "CameraUpdated" with the camera's ID after each change of the optics.
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT Camera
{
public:
    /// The kind of projection.
    using Type = int;
    static constexpr Type PERSPECTIVE = 0;  ///< far is small
    static constexpr Type ORTHOGRAPHIC = 1; ///< sizes do not depend on the distance

    /// A camera of `scene`, which may be empty, with the defaults of its type:
    ///
    /// | type         | yFov | zNear | zFar  |
    /// |--------------|------|-------|-------|
    /// | PERSPECTIVE  | 45   | 0.1   | 10000 |
    /// | ORTHOGRAPHIC | 1    | 0.1   | 10000 |
    /// | any other    | 0    | 0     | 0     |
    Camera(const ISceneContextPtr& scene, Type type, std::string id, std::string name);

    virtual ~Camera();

    const std::string& getID() const;
    const std::string& getName() const;

    Type getCameraType() const;

    /// Sets the type only: the optics stay and nothing is raised.
    void setCameraType(Type type);

    /// Vertical field of view in degrees; of an orthographic camera the vertical
    /// magnification.
    float getYFov() const;

    /// Distances of the clip planes in scene units.
    float getZNear() const;
    float getZFar() const;

    /// @name Setters
    /// Each stores its value as it is and raises "CameraUpdated" once.
    /// @{

    void setYFov(float yFov);
    void setZNear(float zNear);
    void setZFar(float zFar);

    /// @}

    /// Raises "CameraUpdated".
    void triggerUpdateEvent();

private:
    boost::weak_ptr<ISceneContext> m_sceneManager;
    std::string m_id;
    std::string m_name;
    Type m_cameraType;
    float m_yFov = 0.0F;
    float m_zNear = 0.0F;
    float m_zFar = 0.0F;
};
} // namespace velmoran::scene
