// The events that a scene manager handles: other parts of the application create
// effects and materials and edit them by these.

#include "core/event/EventManager.h"
#include "scene/EventTypes.h"
#include "scene/manager/SceneAttempt.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>

namespace velmoran::scene
{
using core::event::Event;
using core::event::EventData;

void SceneManager::registerEventHandlers()
{
    using boost::placeholders::_1;
    registerHandler("L_NewEffect", boost::bind(&SceneManager::localNewEffectHandler, this, _1));
    registerHandler("L_NewMaterial", boost::bind(&SceneManager::localNewMaterialHandler, this, _1));
    registerHandler("L_MaterialParameterUpdated",
                    boost::bind(&SceneManager::localMaterialParameterUpdatedHandler, this, _1));
    registerHandler("L_MaterialTechniqueChanged",
                    boost::bind(&SceneManager::localMaterialTechniqueChangedHandler, this, _1));
}

/// Fields: sender, effect's ID, file name.
void SceneManager::localNewEffectHandler(Event event)
{
    const EventData& data = event.getEventData();
    const std::string id = data.getArg(1);
    const std::string fileName = data.getArg(2);
    if (!id.empty() && !fileName.empty())
    {
        addEffect(boost::make_shared<Effect>(id, fileName, ""));
    }
}

/// Fields: sender, material's ID, effect's ID.
void SceneManager::localNewMaterialHandler(Event event)
{
    const EventData& data = event.getEventData();
    const std::string id = data.getArg(1);
    const std::string effectID = data.getArg(2);
    if (!id.empty() && !effectID.empty())
    {
        addMaterial(boost::make_shared<Material>(id, effectID));
    }
}

/// Fields: sender, material's ID, parameter's name, value, type. The value of a
/// texture is a file name here and the identifier of its image in the material.
void SceneManager::localMaterialParameterUpdatedHandler(Event event)
{
    const EventData& data = event.getEventData();
    const std::string materialID = data.getArg(1);
    const std::string name = data.getArg(2);
    std::string value = data.getArg(3);
    const std::string type = data.getArg(4);
    if (materialID.empty() || name.empty() || value.empty() || type.empty())
    {
        return;
    }
    const MaterialPtr material = getMaterialWithID(materialID);
    if (!material)
    {
        m_logger << "[WARN] Trying to change a parameter from a non existent material.";
        return;
    }
    const boost::shared_ptr<SceneManager> self = weak_from_this().lock(); // listeners may let go
    SceneAttempt attempt(*this);
    if (type == "texture")
    {
        ImagePtr image = getImageByFilename(value);
        if (!image)
        {
            image = boost::make_shared<Image>(generateID(), value, "");
            addImage(image);
        }
        value = image->getID();
    }
    const MaterialParameterPtr parameter = material->getParameterByName(name);
    if (parameter)
    {
        parameter->setValue(value);
    }
    else
    {
        material->addMaterialParameter(boost::make_shared<MaterialParameter>(name, type, value));
    }
    attempt.keep();
    raise(events::sceneUpdate(), "");
}

/// Fields: sender, material's ID, technique (may be empty).
void SceneManager::localMaterialTechniqueChangedHandler(Event event)
{
    const EventData& data = event.getEventData();
    const std::string materialID = data.getArg(1);
    const MaterialPtr material = materialID.empty() ? MaterialPtr() : getMaterialWithID(materialID);
    if (material)
    {
        material->setTechnique(data.getArg(2));
    }
}
} // namespace velmoran::scene
