#include "scene/geometry/InstanceGeometry.h"

#include "scene/geometry/IGeometry.h"

namespace velmoran::scene
{
InstanceGeometry::InstanceGeometry(const IGeometryPtr& geometry, const MaterialPtr& material)
    : InstanceGeometry(geometry, MaterialMap{{"velmoran_material", material}})
{
}

InstanceGeometry::InstanceGeometry(const IGeometryPtr& geometry, MaterialMap bindings)
    : m_geometry(geometry), m_materialMap(std::move(bindings))
{
    assembleMaterialsList();
}

InstanceGeometry::~InstanceGeometry() = default;

const IGeometryPtr& InstanceGeometry::getGeometry() const
{
    return m_geometry;
}

void InstanceGeometry::setGeometry(const IGeometryPtr& geometry)
{
    m_geometry = geometry;
}

MaterialPtr InstanceGeometry::getMaterial(const std::string& symbol) const
{
    const auto found = m_materialMap.find(symbol);
    return found != m_materialMap.end() ? found->second : MaterialPtr();
}

void InstanceGeometry::setMaterial(const std::string& symbol, const MaterialPtr& material)
{
    if (!material)
    {
        return;
    }
    m_materialList.reserve(m_materialMap.size()); // nothing fails from here on
    const auto found = m_materialMap.find(symbol);
    if (found != m_materialMap.end())
    {
        found->second = material;
    }
    assembleMaterialsList();
}

const InstanceGeometry::MaterialMap& InstanceGeometry::getMaterialMap() const
{
    return m_materialMap;
}

void InstanceGeometry::setMaterialMap(const MaterialMap& bindings)
{
    MaterialMap kept = bindings;
    m_materialMap.swap(kept);
}

const std::vector<MaterialPtr>& InstanceGeometry::getMaterialList() const
{
    return m_materialList;
}

void InstanceGeometry::assembleMaterialsList()
{
    m_materialList.reserve(m_materialMap.size());
    m_materialList.clear();
    for (const auto& [symbol, material] : m_materialMap)
    {
        m_materialList.push_back(material);
    }
}

void InstanceGeometry::exchange(InstanceGeometry& other)
{
    m_geometry.swap(other.m_geometry);
    m_materialMap.swap(other.m_materialMap);
    m_materialList.swap(other.m_materialList);
}

std::string InstanceGeometry::toString() const
{
    return "Instance Geometry for Geometry with ID: " +
           (m_geometry ? m_geometry->getID() : std::string()) + "\n";
}
} // namespace velmoran::scene
