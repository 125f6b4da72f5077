#include "scene/material/MaterialParameter.h"

#include <ostream>
#include <utility>

namespace velmoran::scene
{
MaterialParameter::MaterialParameter(std::string name, std::string type, std::string value)
    : m_name(std::move(name)), m_type(std::move(type)), m_value(std::move(value))
{
}

MaterialParameter::~MaterialParameter() = default;

MaterialParameter::MaterialParameter(const MaterialParameter& other) = default;

MaterialParameter& MaterialParameter::operator=(const MaterialParameter& other) = default;

void MaterialParameter::setName(std::string name)
{
    m_name = std::move(name);
}

void MaterialParameter::setValue(std::string value)
{
    m_value = std::move(value);
}

std::ostream& operator<<(std::ostream& out, const MaterialParameter& parameter)
{
    return out << "  Parameter Name: " << parameter.getName() << ", Value: " << parameter.getValue()
               << '\n';
}
} // namespace velmoran::scene
