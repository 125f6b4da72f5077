// The libraries of a scene manager: install, add, look up, remove.

#include "core/event/EventManager.h"
#include "core/utils/AllOrNothing.h"
#include "scene/EventTypes.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/deform/Controller.h"
#include "scene/graph/Camera.h"
#include "scene/graph/CameraInstance.h"
#include "scene/graph/Light.h"
#include "scene/manager/SceneAttempt.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/physics/PhysicsMaterial.h"
#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsScene.h"

#include <boost/make_shared.hpp>

namespace velmoran::scene
{
namespace
{
/// Records the identifiers of all items, or none.
template <typename T, typename Getter>
void recordAll(IdentifierRegister& identifiers, const std::vector<boost::shared_ptr<T>>& items,
               Getter getID)
{
    core::utils::UndoUnlessKept undo([&identifiers, mark = identifiers.getMark()]
                                     { identifiers.returnTo(mark); });
    for (const boost::shared_ptr<T>& item : items)
    {
        identifiers.record((item.get()->*getID)());
    }
    undo.keep();
}

/// Installs a library and records the identifiers of its elements.
template <typename T, typename Getter>
void installRecorded(IdentifierRegister& identifiers, Library<T>& library,
                     const std::vector<boost::shared_ptr<T>>& items, Getter getID)
{
    std::vector<boost::shared_ptr<T>> kept = Library<T>::withoutEmpty(items);
    recordAll(identifiers, kept, getID);
    library.install(std::move(kept));
}

/// Appends an item, which is not empty, and records its identifier.
template <typename T>
void addRecorded(IdentifierRegister& identifiers, Library<T>& library,
                 const boost::shared_ptr<T>& item, const std::string& id)
{
    library.makeRoom();
    identifiers.record(id);
    library.add(item);
}
} // namespace

// Images

void SceneManager::setImageLibrary(const std::vector<ImagePtr>& images)
{
    installRecorded(*m_identifiers, m_images, images, &Image::getID);
}

void SceneManager::addImage(const ImagePtr& image)
{
    if (!image)
    {
        return;
    }
    const ImagePtr present = getImageByID(image->getID());
    if (present && present->getFilename() == image->getFilename())
    {
        m_logger << "[WARN] adding same image to library with repeated ID. Discarding.";
        return;
    }
    SceneAttempt attempt(*this);
    const std::string id = present ? generateID() : image->getID();
    addRecorded(*m_identifiers, m_images, image, id);
    if (present)
    {
        image->setID(id);
    }
    attempt.keep();
    raise(events::sceneUpdate(), "");
}

std::vector<ImagePtr> SceneManager::getImageLibrary() const
{
    return m_images.items();
}

ImagePtr SceneManager::getImageByID(const std::string& id) const
{
    return m_images.firstWith(&Image::getID, id);
}

ImagePtr SceneManager::getImageByFilename(const std::string& fileName) const
{
    return m_images.firstWith(&Image::getFilename, fileName);
}

unsigned int SceneManager::getImageCount() const
{
    return m_images.count();
}

ImagePtr SceneManager::getImageAt(unsigned int index) const
{
    return m_images.at(index);
}

void SceneManager::setSurrounding(const ImagePtr& image)
{
    const boost::shared_ptr<SceneManager> self = weak_from_this().lock(); // listeners may let go
    const ImagePtr kept = image;
    if (kept && !m_images.contains(kept))
    {
        addImage(kept);
    }
    m_surrounding = kept;
    raise(events::sceneSurroundingUpdate(), "");
}

ImagePtr SceneManager::getSurrounding() const
{
    return m_surrounding;
}

// Effects

void SceneManager::setEffectLibrary(const std::vector<EffectPtr>& effects)
{
    installRecorded(*m_identifiers, m_effects, effects, &Effect::getID);
}

void SceneManager::addEffect(const EffectPtr& effect)
{
    if (effect)
    {
        addRecorded(*m_identifiers, m_effects, effect, effect->getID());
    }
}

std::vector<EffectPtr> SceneManager::getEffectLibrary() const
{
    return m_effects.items();
}

EffectPtr SceneManager::getEffectByID(const std::string& id) const
{
    return m_effects.firstWith(&Effect::getID, id);
}

EffectPtr SceneManager::getEffectByFilename(const std::string& fileName) const
{
    return m_effects.firstWith(&Effect::getFilename, fileName);
}

void SceneManager::removeEffect(const EffectPtr& effect)
{
    if (!effect)
    {
        return;
    }
    const EffectPtr kept = effect;
    m_materials.removeAll([&](const Material& material)
                          { return material.getEffectID() == kept->getID(); });
    m_effects.removeAll([&](const Effect& entry) { return &entry == kept.get(); });
}

std::string SceneManager::effectLibraryToString() const
{
    std::string text = "EffectLibrary: (effectID, filename)\n";
    for (const EffectPtr& effect : m_effects.items())
    {
        text += effect->getID() + ", " + effect->getFilename() + "\n";
    }
    return text;
}

// Materials

void SceneManager::setMaterialList(const std::vector<MaterialPtr>& materials)
{
    installRecorded(*m_identifiers, m_materials, materials, &Material::getMaterialID);
    raise(events::sceneUpdate(), "MaterialList");
}

void SceneManager::addMaterial(const MaterialPtr& material)
{
    if (material)
    {
        addRecorded(*m_identifiers, m_materials, material, material->getMaterialID());
        raise(events::sceneUpdate(), "MaterialList");
    }
}

std::vector<MaterialPtr> SceneManager::getMaterialList() const
{
    return m_materials.items();
}

MaterialPtr SceneManager::getMaterialWithID(const std::string& id) const
{
    return m_materials.firstWith(&Material::getMaterialID, id);
}

std::string SceneManager::materialLibraryToString() const
{
    std::string text;
    for (const MaterialPtr& material : m_materials.items())
    {
        text += material->toString() + "\n";
    }
    return text;
}

// Cameras

void SceneManager::setCameraLibrary(const std::vector<CameraPtr>& cameras)
{
    installRecorded(*m_identifiers, m_cameras, cameras, &Camera::getID);
}

CameraPtr SceneManager::getCameraByID(const std::string& id) const
{
    return m_cameras.firstWith(&Camera::getID, id);
}

unsigned int SceneManager::getCameraCount() const
{
    return m_cameras.count();
}

CameraPtr SceneManager::getCameraAt(unsigned int index) const
{
    return m_cameras.at(index);
}

void SceneManager::addCameraInstance(const CameraInstancePtr& instance)
{
    if (instance)
    {
        const std::string message = "Added Camera Instance" + instance->getSID();
        addRecorded(*m_identifiers, m_cameraInstances, instance, instance->getSID());
        m_logger << message;
    }
}

CameraInstancePtr SceneManager::getCameraInstanceBySID(const std::string& sid) const
{
    return m_cameraInstances.firstWith(&CameraInstance::getSID, sid);
}

unsigned int SceneManager::getCameraInstanceCount() const
{
    return m_cameraInstances.count();
}

CameraInstancePtr SceneManager::getCameraInstanceAt(unsigned int index) const
{
    return m_cameraInstances.at(index);
}

// Lights

void SceneManager::setLightLibrary(const std::vector<LightPtr>& lights)
{
    installRecorded(*m_identifiers, m_lights, lights, &Light::getID);
}

bool SceneManager::addLight(const LightPtr& light)
{
    if (!light || getLightByID(light->getID()))
    {
        return false;
    }
    addRecorded(*m_identifiers, m_lights, light, light->getID());
    return true;
}

std::vector<LightPtr> SceneManager::getLightLibrary() const
{
    return m_lights.items();
}

LightPtr SceneManager::getLightByID(const std::string& id) const
{
    return m_lights.firstWith(&Light::getID, id);
}

// Controllers

void SceneManager::setControllersLibrary(const std::vector<ControllerPtr>& controllers)
{
    installRecorded(*m_identifiers, m_controllers, controllers, &Controller::getID);
}

void SceneManager::addController(const ControllerPtr& controller)
{
    if (controller)
    {
        addRecorded(*m_identifiers, m_controllers, controller, controller->getID());
    }
}

std::vector<ControllerPtr> SceneManager::getControllersLibrary() const
{
    return m_controllers.items();
}

ControllerPtr SceneManager::getControllerById(const std::string& id) const
{
    return m_controllers.firstWith(&Controller::getID, id);
}

// Animations

void SceneManager::setAnimationsLibrary(const std::vector<AnimationPtr>& animations)
{
    std::vector<AnimationPtr> kept = Library<Animation>::withoutEmpty(animations);
    AnimationManagerPtr player = boost::make_shared<AnimationManager>();
    addSceneController(player);
    core::utils::UndoUnlessKept undo([this, &player] { removeSceneController(player); });
    recordAll(*m_identifiers, kept, &Animation::getID);
    undo.keep();
    m_animations.install(std::move(kept));
    m_animationManager.swap(player);
    removeSceneController(player);
}

void SceneManager::addAnimation(const AnimationPtr& animation)
{
    if (animation)
    {
        addRecorded(*m_identifiers, m_animations, animation, animation->getID());
    }
}

std::vector<AnimationPtr> SceneManager::getAnimationsLibrary() const
{
    return m_animations.items();
}

void SceneManager::removeAnimation(unsigned int index)
{
    m_animations.removeAt(index);
}

void SceneManager::removeAllAnimations()
{
    m_animations.clear();
}

// Physics description

void SceneManager::setPhysicsSceneLibrary(const std::vector<PhysicsScenePtr>& scenes)
{
    installRecorded(*m_identifiers, m_physicsScenes, scenes, &PhysicsScene::getID);
}

std::vector<PhysicsScenePtr> SceneManager::getPhysicsSceneLibrary() const
{
    return m_physicsScenes.items();
}

PhysicsScenePtr SceneManager::getPhysicsSceneById(const std::string& id) const
{
    return m_physicsScenes.firstWith(&PhysicsScene::getID, id);
}

void SceneManager::setInstancedPhysicsScenes(const std::vector<PhysicsScenePtr>& scenes)
{
    m_instancedPhysicsScenes.install(Library<PhysicsScene>::withoutEmpty(scenes));
}

std::vector<PhysicsScenePtr> SceneManager::getInstancedPhysicsScenes() const
{
    return m_instancedPhysicsScenes.items();
}

void SceneManager::setPhysicsMaterialLibrary(const std::vector<PhysicsMaterialPtr>& materials)
{
    installRecorded(*m_identifiers, m_physicsMaterials, materials, &PhysicsMaterial::getID);
}

std::vector<PhysicsMaterialPtr> SceneManager::getPhysicsMaterialLibrary() const
{
    return m_physicsMaterials.items();
}

PhysicsMaterialPtr SceneManager::getPhysicsMaterialById(const std::string& id) const
{
    return m_physicsMaterials.firstWith(&PhysicsMaterial::getID, id);
}

void SceneManager::setPhysicsModelLibrary(const std::vector<PhysicsModelPtr>& models)
{
    installRecorded(*m_identifiers, m_physicsModels, models, &PhysicsModel::getID);
}

std::vector<PhysicsModelPtr> SceneManager::getPhysicsModelLibrary() const
{
    return m_physicsModels.items();
}

PhysicsModelPtr SceneManager::getPhysicsModelById(const std::string& id) const
{
    return m_physicsModels.firstWith(&PhysicsModel::getID, id);
}
} // namespace velmoran::scene
