#include "examples/collada/Optics.h"

#include "examples/collada/Values.h"
#include "scene/graph/Camera.h"
#include "scene/graph/Light.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <cmath>

namespace velmoran::examples::collada
{
namespace
{
constexpr double DEGREES_PER_RADIAN = 57.29577951308232;

std::optional<float> readOptional(const Document& document, const pugi::xml_node& element)
{
    return element ? std::optional<float>(readFloat(document, element, 0.0F)) : std::nullopt;
}

float readAspectRatio(Document& document, const pugi::xml_node& lens)
{
    const float ratio = readFloat(document, lens.child("aspect_ratio"), 1.0F);
    if (ratio > 0.0F)
    {
        return ratio;
    }
    document.warn(lens.child("aspect_ratio"), "taken as 1: it is not above 0");
    return 1.0F;
}

/// The vertical angle of a picture `ratio` times as wide as high, in degrees.
float toVertical(float horizontal, float ratio)
{
    const double half = static_cast<double>(horizontal) / 2.0 / DEGREES_PER_RADIAN;
    const double vertical = 2.0 * std::atan(std::tan(half) / static_cast<double>(ratio));
    return static_cast<float>(vertical * DEGREES_PER_RADIAN);
}

std::optional<float> readYFov(Document& document, const pugi::xml_node& lens)
{
    const bool isPerspective = std::string_view(lens.name()) == "perspective";
    const std::optional<float> x =
        readOptional(document, lens.child(isPerspective ? "xfov" : "xmag"));
    const std::optional<float> y =
        readOptional(document, lens.child(isPerspective ? "yfov" : "ymag"));
    if (y || !x)
    {
        return y;
    }
    const float ratio = readAspectRatio(document, lens);
    return isPerspective ? toVertical(*x, ratio) : *x / ratio;
}

std::optional<CameraDraft> readCamera(Document& document, const pugi::xml_node& camera)
{
    const pugi::xml_node optics = camera.child("optics").child("technique_common");
    const pugi::xml_node perspective = optics.child("perspective");
    const pugi::xml_node lens = perspective ? perspective : optics.child("orthographic");
    if (!lens)
    {
        return std::nullopt;
    }
    CameraDraft draft;
    draft.id = getAttribute(camera, "id");
    draft.name = getAttribute(camera, "name");
    draft.type = perspective ? scene::Camera::PERSPECTIVE : scene::Camera::ORTHOGRAPHIC;
    draft.yFov = readYFov(document, lens);
    draft.zNear = readOptional(document, lens.child("znear"));
    draft.zFar = readOptional(document, lens.child("zfar"));
    return draft;
}

/// Some programs write an alpha value, which a light has no use for.
Eigen::Vector3f readColor(const Document& document, const pugi::xml_node& element)
{
    const std::vector<float> values = readFloats(document, element);
    if (values.size() != 3 && values.size() != 4)
    {
        document.fail(element,
                      "a color has three or four numbers, not " + std::to_string(values.size()));
    }
    return Eigen::Vector3f(values.data());
}

std::optional<LightDraft> readLight(const Document& document, const pugi::xml_node& light)
{
    constexpr std::pair<const char*, int> KINDS[] = {
        {"ambient", scene::Light::AMBIENT},
        {"directional", scene::Light::DIRECTIONAL},
        {"point", scene::Light::POINT},
        {"spot", scene::Light::SPOT},
    };
    for (const auto& [name, type] : KINDS)
    {
        const pugi::xml_node source = light.child("technique_common").child(name);
        if (!source)
        {
            continue;
        }
        LightDraft draft;
        draft.id = getAttribute(light, "id");
        draft.name = getAttribute(light, "name");
        draft.type = type;
        if (const pugi::xml_node color = source.child("color"))
        {
            draft.color = readColor(document, color);
        }
        draft.attenuation = Eigen::Vector3f(
            readFloat(document, source.child("constant_attenuation"), draft.attenuation.x()),
            readFloat(document, source.child("linear_attenuation"), draft.attenuation.y()),
            readFloat(document, source.child("quadratic_attenuation"), draft.attenuation.z()));
        draft.fallOffAngle = readFloat(document, source.child("falloff_angle"), draft.fallOffAngle);
        draft.fallOffExponent =
            readFloat(document, source.child("falloff_exponent"), draft.fallOffExponent);
        return draft;
    }
    return std::nullopt;
}

/// Appends `draft` and records its place; warns when there is none.
template <typename Draft>
void keep(Document& document, const pugi::xml_node& element, const std::optional<Draft>& draft,
          std::vector<Draft>& drafts, std::unordered_map<const void*, std::size_t>& indices)
{
    if (!draft)
    {
        document.warn(element, "left out: its kind is not known");
        return;
    }
    indices.emplace(element.internal_object(), drafts.size());
    drafts.push_back(*draft);
}
} // namespace

Optics::Optics(Document& document)
{
    for (const pugi::xml_node& camera : document.getIdentified("library_cameras", "camera"))
    {
        keep(document, camera, readCamera(document, camera), m_cameras, m_indices);
    }
    for (const pugi::xml_node& light : document.getIdentified("library_lights", "light"))
    {
        keep(document, light, readLight(document, light), m_lights, m_indices);
    }
}

const std::vector<CameraDraft>& Optics::getCameras() const
{
    return m_cameras;
}

const std::vector<LightDraft>& Optics::getLights() const
{
    return m_lights;
}

std::optional<std::size_t> Optics::findIndex(const pugi::xml_node& element) const
{
    const auto found = m_indices.find(element.internal_object());
    return found == m_indices.end() ? std::nullopt : std::optional<std::size_t>(found->second);
}

scene::CameraPtr makeCamera(const CameraDraft& draft, const scene::SceneManagerPtr& scene)
{
    const auto camera = boost::make_shared<scene::Camera>(scene, draft.type, draft.id, draft.name);
    if (draft.yFov)
    {
        camera->setYFov(*draft.yFov);
    }
    if (draft.zNear)
    {
        camera->setZNear(*draft.zNear);
    }
    if (draft.zFar)
    {
        camera->setZFar(*draft.zFar);
    }
    return camera;
}

scene::LightPtr makeLight(const LightDraft& draft, const scene::SceneManagerPtr& scene)
{
    const auto light = boost::make_shared<scene::Light>(scene, draft.type, draft.id, draft.name);
    light->setColor(draft.color);
    light->setAttenuation(draft.attenuation.x(), draft.attenuation.y(), draft.attenuation.z());
    light->setFallOff(draft.fallOffAngle, draft.fallOffExponent);
    return light;
}
} // namespace velmoran::examples::collada
