#include "scene/graph/LayerManager.h"

#include "core/logger/BasicDecorator.h"
#include "core/logger/FileWriterFactory.h"
#include "core/logger/IWriter.h"
#include "core/utils/AllOrNothing.h"

#include <boost/make_shared.hpp>

#include <cstddef>
#include <utility>

namespace velmoran::scene
{
using namespace core::logger;

LayerManager::LayerManager()
{
    const IWriterPtr writer = FileWriterFactory::getInstance()->getFileWriter("SceneManager.log");
    writer->setDecorator(boost::make_shared<BasicDecorator>());
    m_logger.addWriter(writer);

    for (const char* name :
         {"hidden", "visible", "selected", "cast_shadow", "transparent", "post_render"})
    {
        addLayer(name);
    }
}

LayerManager::~LayerManager() = default;

int LayerManager::addLayer(std::string name)
{
    const auto present = m_layers.find(name);
    if (present != m_layers.end())
    {
        return present->second;
    }
    core::utils::makeRoom(m_names);
    std::string listed = name;
    const int id = getLayerCount();
    m_layers.emplace(std::move(name), id);
    m_names.push_back(std::move(listed));
    return id;
}

int LayerManager::getLayerCount() const
{
    return static_cast<int>(m_names.size());
}

void LayerManager::removeLayersFrom(int id)
{
    while (id >= 0 && getLayerCount() > id)
    {
        m_layers.erase(m_names.back());
        m_names.pop_back();
    }
}

int LayerManager::getLayerID(std::string name)
{
    return addLayer(std::move(name));
}

std::string LayerManager::getLayerName(int id) const
{
    const auto index = static_cast<std::size_t>(id);
    return id >= 0 && index < m_names.size() ? m_names[index] : std::string();
}

std::map<int, int> LayerManager::mergeLayers(const LayerManagerPtr& other, bool discardRepeated)
{
    std::map<int, int> translation;
    if (!other || other.get() == this)
    {
        return translation;
    }
    core::utils::UndoUnlessKept undo([this, count = getLayerCount()] { removeLayersFrom(count); });
    for (const auto& [name, otherID] : other->m_layers)
    {
        const auto present = m_layers.find(name);
        if (present == m_layers.end())
        {
            m_logger << "[INFO] Added new layer " + name +
                            " with ID: " + std::to_string(addLayer(name));
        }
        else if (discardRepeated)
        {
            translation[otherID] = present->second;
            m_logger << "[INFO] Found repeated Layer ID: " + name + " and discarded it.";
        }
        else
        {
            const std::string newName = name + "__renamed__";
            translation[otherID] = addLayer(newName);
            m_logger << "[INFO] Found repeated Layer ID. Renamed " + name + (" to " + newName);
        }
    }
    undo.keep();
    return translation;
}
} // namespace velmoran::scene
