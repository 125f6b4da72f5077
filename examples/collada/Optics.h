#pragma once

#include "examples/collada/Document.h"
#include "scene/Forward.h"

#include <Eigen/Core>

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace velmoran::examples::collada
{
/// A camera before it belongs to a scene. What is not set keeps the library's default.
struct CameraDraft
{
    std::string id;
    std::string name;
    int type = 0;              ///< `Camera::Type`
    std::optional<float> yFov; ///< degrees; vertical magnification if orthographic
    std::optional<float> zNear;
    std::optional<float> zFar;
};

/// A light before it belongs to a scene.
struct LightDraft
{
    std::string id;
    std::string name;
    int type = 0; ///< `Light::LightType`
    Eigen::Vector3f color = Eigen::Vector3f::Ones();
    Eigen::Vector3f attenuation = Eigen::Vector3f::UnitX(); ///< constant, linear, quadratic
    float fallOffAngle = 180.0F;                            ///< degrees
    float fallOffExponent = 0.0F;
};

/// The cameras and lights of a document.
///
/// A horizontal field of view or magnification is converted to the vertical one by the
/// aspect ratio (width by height), which is taken as 1 when it is missing or not above
/// 0. Cameras and lights of an unknown kind are left out with a warning.
class Optics
{
public:
    explicit Optics(Document& document);

    const std::vector<CameraDraft>& getCameras() const;
    const std::vector<LightDraft>& getLights() const;

    /// The place in `getCameras()` or `getLights()` of a `<camera>` or `<light>`;
    /// nothing when it was left out.
    std::optional<std::size_t> findIndex(const pugi::xml_node& element) const;

private:
    std::unordered_map<const void*, std::size_t> m_indices; ///< by element
    std::vector<CameraDraft> m_cameras;
    std::vector<LightDraft> m_lights;
};

/// Makes the camera for a scene; raises its "CameraUpdated" events there.
scene::CameraPtr makeCamera(const CameraDraft& draft, const scene::SceneManagerPtr& scene);

/// Makes the light for a scene; raises its "LightUpdated" events there.
scene::LightPtr makeLight(const LightDraft& draft, const scene::SceneManagerPtr& scene);
} // namespace velmoran::examples::collada
