#include "scene/material/Material.h"

#include "scene/material/MaterialParameter.h"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <utility>

namespace velmoran::scene
{
Material::Material(std::string materialID, std::string effectID)
    : m_materialID(std::move(materialID)), m_effectID(std::move(effectID))
{
}

Material::~Material() = default;

Material::Material(const Material& other) = default;

Material& Material::operator=(const Material& other) = default;

Material Material::clone() const
{
    Material copy(m_materialID, m_effectID);
    copy.m_parameters = m_parameters;
    return copy;
}

void Material::setMaterialID(std::string materialID)
{
    m_materialID = std::move(materialID);
}

void Material::setEffectID(std::string effectID)
{
    m_effectID = std::move(effectID);
}

void Material::setTechnique(std::string technique)
{
    m_technique = std::move(technique);
}

void Material::setMaterialParameters(std::vector<MaterialParameterPtr> parameters)
{
    m_parameters = std::move(parameters);
}

void Material::addMaterialParameter(const MaterialParameterPtr& parameter)
{
    m_parameters.push_back(parameter);
}

unsigned int Material::getParametersCount() const
{
    return static_cast<unsigned int>(m_parameters.size());
}

MaterialParameterPtr Material::getParameterAt(unsigned int index) const
{
    return index < m_parameters.size() ? m_parameters[index] : MaterialParameterPtr();
}

MaterialParameterPtr Material::getParameterByName(const std::string& name) const
{
    const auto found = std::find_if(m_parameters.begin(), m_parameters.end(),
                                    [&name](const MaterialParameterPtr& parameter)
                                    { return parameter && parameter->getName() == name; });
    return found != m_parameters.end() ? *found : MaterialParameterPtr();
}

std::string Material::toString() const
{
    std::string text = "Material ID: " + m_materialID + ", Effect ID: " + m_effectID + '\n';
    for (std::size_t i = 0; i < m_parameters.size(); ++i)
    {
        const MaterialParameterPtr& parameter = m_parameters[i];
        if (parameter)
        {
            text += " Param " + std::to_string(i) + ": " + parameter->getName() + ", " +
                    parameter->getType() + ", " + parameter->getValue() + '\n';
        }
    }
    return text;
}

std::ostream& operator<<(std::ostream& out, const Material& material)
{
    out << " Material ID: " << material.getMaterialID() << ", effect ID: " << material.getEffectID()
        << "\n  Material Parameters: \n";
    for (const MaterialParameterPtr& parameter : material.getMaterialParameters())
    {
        out << static_cast<const void*>(parameter.get());
    }
    return out;
}
} // namespace velmoran::scene
